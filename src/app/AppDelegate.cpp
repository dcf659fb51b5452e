#include "app/AppDelegate.h"

#include "app/ImageView_Drop_Files.h"
#include "app/MainWindow.h"
#include "app/Qt_Prompts.h"
#include "export/Window_Concatenate_Dimension.h"
#include "export/Window_Export_To_Photos.h"
#include "export/Window_Join_Files.h"
#include "export/Window_Order_Concatenate.h"
#include "player/Preview_Player.h"
#include "timeline/Segment_Editor.h"
#include "timeline/View_Video_Timeline.h"
#include "timeline/View_Waveform.h"
#include "tools/Tool_Process.h"
#include "tools/Window_Progress.h"
#include "tools/Window_Tool_Log.h"
#include "ui_MainWindow.h"

#include <QGridLayout>

#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void exitAtOnce(int status)
{
    Tool_Process::Kill_All_Running();
    std::fflush(nullptr);
    std::_Exit(status);
}

void oneShot(QTimer& timer, int milliseconds, AppDelegate* session, void (AppDelegate::*routine)())
{
    timer.setSingleShot(true);
    timer.setInterval(milliseconds);
    QObject::connect(&timer, &QTimer::timeout, session, routine);
}

} // namespace

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent)
    , exitProcess(exitAtOnce)
    , mainWindow(std::make_unique<MainWindow>(*this))
    , prompter(std::make_unique<Qt_Prompts>(mainWindow.get()))
{
    window = mainWindow.get();
    Ui::MainWindow& ui = window->ui();
    playerView = ui.playerView;
    videoWidget = ui.videoWidget;
    timeSlider = ui.timeSlider;
    sliderVolume = ui.sliderVolume;
    loadingSpinner = ui.loadingSpinner;
    noVideoLabel = ui.noVideoLabel;
    unplayableLabel = ui.unplayableLabel;
    buttonVideoPlay = ui.buttonVideoPlay;
    buttonVideoPause = ui.buttonVideoPause;
    buttonVideoStop = ui.buttonVideoStop;
    labelCurrentTime = ui.labelCurrentTime;

    dropView = new ImageView_Drop_Files(*this, playerView);
    static_cast<QGridLayout*>(playerView->layout())->addWidget(dropView, 0, 0);
    ViewSpectrumThumbnail = new View_Spectrum(*this, ui.waveformArea);
    ui.waveformArea->layout()->addWidget(ViewSpectrumThumbnail);
    viewTimeline = new View_Video_Timeline(*this, ui.timelineArea);
    static_cast<QGridLayout*>(ui.timelineArea->layout())->addWidget(viewTimeline, 0, 0);
    spinnerLoadingThumbnails = ui.spinnerLoadingThumbnails;
    spinnerLoadingThumbnails->raise();

    oneShot(timerShowWindowProgressModal, 200, this, &AppDelegate::TimerShowWindowProgressRoutine);
    oneShot(timerHandleVideoSelected, 200, this, &AppDelegate::TimerHandleVideoSelectedRoutine);
    oneShot(timerCreateSpectrumThumbnail, 100, this,
            &AppDelegate::TimerCreateSpectrumThumbnailRoutine);
    oneShot(timerGetThumbnail, 100, this, &AppDelegate::TimerGetThumbnailRoutine);
    oneShot(timerSetCurrentPosition, 100, this, &AppDelegate::TimerSetCurrentVideoPositionRoutine);
    oneShot(timerKeyLeft, 200, this, &AppDelegate::TimerKeyLeftRoutine);
    oneShot(timerKeyRight, 200, this, &AppDelegate::TimerKeyRightRoutine);
    timerPreviewAnswer.setSingleShot(true);
    timerPreviewAnswer.setInterval(10000);
    connect(&timerPreviewAnswer, &QTimer::timeout, this, [this] {
        stopLoadingAnimationAndHandleError(QStringLiteral("the preview did not answer"));
        Preview_Answered(false);
    });
    timeObserver.setInterval(100);
    connect(&timeObserver, &QTimer::timeout, this,
            [this] { timeSlider->setValue(static_cast<int>(currentTime())); });
    timerVideoPlaying.setInterval(800);
    connect(&timerVideoPlaying, &QTimer::timeout, this, &AppDelegate::TimerVideoPlayingRoutine);

    Wire_Segment_Editing();
    Wire_Frame_Steps();
    connect(&commandGate, &Command_Gate::deferredOpenReady, this, &AppDelegate::Open_When_Idle);
    connect(&commandGate, &Command_Gate::busyChanged, this, [this](bool busy) {
        if (busy)
            return;
        b_Cancel_Requested = false;
        toolRunner.setStep({});
    });
    connect(&toolRunner, &Tool_Runner::started, this, &AppDelegate::toolStarted);
    connect(&toolRunner, &Tool_Runner::standardErrorData, this, &AppDelegate::errData);
    connect(&toolRunner, &Tool_Runner::failed, this, &AppDelegate::Tell_Tool_Failed);
    connect(buttonVideoPlay, &QPushButton::clicked, this, &AppDelegate::OnVideoPlay);
    connect(buttonVideoPause, &QPushButton::clicked, this, &AppDelegate::OnVideoPause);
    connect(buttonVideoStop, &QPushButton::clicked, this, &AppDelegate::OnVideoStop);
    connect(timeSlider, &QSlider::sliderMoved, this, &AppDelegate::OnChangeVideoPosition);
    connect(sliderVolume, &QSlider::valueChanged, this,
            [this](int value) { setVolume(static_cast<float>(value) / 100.0f); });
}

AppDelegate::~AppDelegate()
{
    // Sheets are children of the main window: release them while it still exists.
    windowProgress.reset();
    p_Window_Tool_Log.reset();
    window_Concatenate_Dimension.reset();
    p_Window_Order_Concatenate.reset();
    p_Window_Export_To_Photos.reset();
    p_Window_Join_Files.reset();
    Unregister_Arrow_Hot_Keys();
    Teardown_Player();
}
