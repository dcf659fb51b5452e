#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "app/Work_Folder.h"
#include "tools/Tool_Locator.h"
#include "tools/Window_Progress.h"
#include "ui_MainWindow.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTimer>
#include <QVideoWidget>

void AppDelegate::applicationDidFinishLaunching()
{
    QWidget* preview = window->ui().playerView;
    preview->setAutoFillBackground(true);
    QPalette black = preview->palette();
    black.setColor(QPalette::Window, Qt::black);
    preview->setPalette(black);

    windowProgress.reset();
    i_Duration_in_Seconds = 0;
    iCurrentSpectrumIndex = 0;
    b_Draw_Thumbnails = false;
    array_Time_Stamps.clear();
    array_Thumbnails.clear();
    array_Concatenate.clear();
    s_Concatenate_Resolution.clear();

    s_Output_Folder =
        Work_Folder_Path(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    if (!Ensure_Work_Folder(s_Output_Folder)) {
        prompts().showAlert({QStringLiteral("Error"),
                             QStringLiteral("Error #0008. Application will exit."),
                             {QStringLiteral("Close")}});
        exitProcess(0);
        return;
    }

    const QString executableFolder = QCoreApplication::applicationDirPath();
    sffmpegPath = Locate_Tool(QStringLiteral("ffmpeg"), executableFolder);
    simg2webpPath = Locate_Tool(QStringLiteral("img2webp"), executableFolder);

    qInfo("ffmpeg: %s", qUtf8Printable(sffmpegPath));
    qInfo("img2webp: %s", qUtf8Printable(simg2webpPath));

    RemoveAllContentInFolder(s_Output_Folder);
    Register_Arrow_Hot_Keys();

    window->setWindowTitle(QStringLiteral("Corvanta"));
    // The video view renders through a native window that never paints when it is first shown
    // after a sheet has been up: show it with the window, then hide it until a video arrives.
    videoWidget->show();
    window->show();
    QTimer::singleShot(0, videoWidget, [this] {
        if (!playerLayer)
            videoWidget->hide();
    });
    window->raise();
    window->activateWindow();
}

void AppDelegate::RemoveAllContentInFolder(const QString& folder)
{
    const QStringList failures = Remove_Folder_Content(folder);
    for (const QString& failure : failures)
        qInfo("oops: %s", qUtf8Printable(failure));
}

void AppDelegate::Terminate_App()
{
    exitProcess(0);
}
