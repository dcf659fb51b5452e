#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "export/Window_Join_Files.h"

// Shows the window that joins any files into one; the same window comes back with its list.
void AppDelegate::OnMenuFileJoinFiles()
{
    if (!p_Window_Join_Files)
        p_Window_Join_Files = std::make_unique<Window_Join_Files>(*this, window);
    p_Window_Join_Files->show();
    p_Window_Join_Files->raise();
    p_Window_Join_Files->activateWindow();
}
