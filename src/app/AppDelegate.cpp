#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "app/Qt_Prompts.h"
#include "tools/Tool_Process.h"
#include "tools/Window_Progress.h"

#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void exitAtOnce(int status) {
    Tool_Process::Kill_All_Running();
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent)
    , exitProcess(exitAtOnce)
    , mainWindow(std::make_unique<MainWindow>(*this))
    , prompter(std::make_unique<Qt_Prompts>(mainWindow.get())) {
    window = mainWindow.get();
}

AppDelegate::~AppDelegate() {
    // Sheets are children of the main window: release them while it still exists.
    windowProgress.reset();
}
