#include "app/AppDelegate.h"

#include "app/MainWindow.h"
#include "player/Frame_Probe.h"
#include "player/Preview_Player.h"
#include "player/Seeking.h"
#include "timeline/View_Video_Timeline.h"
#include "timeline/View_Waveform.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Locator.h"
#include "ui_MainWindow.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>

namespace {

struct Step_Command {
    const char* text;
    QList<QKeySequence> keys;
    std::optional<double> (Frame_Index::*step)(double) const;
};

} // namespace

// The Go menu: frame and keyframe steps, offered once the file's frame times are known, and the
// timeline's zoom.
void AppDelegate::Wire_Frame_Steps()
{
    frameProbe = new Frame_Probe(
        Locate_Tool(QStringLiteral("ffprobe"), QCoreApplication::applicationDirPath()),
        toolRunner.log(), this);
    connect(this, &AppDelegate::preparationFinished, frameProbe,
            [this](bool ready) { frameProbe->probe(ready ? sVideoFile : QString()); });

    // Shift with comma or period arrives as "<" or ">" on most keyboards, with or without the
    // Shift modifier; each form is taken.
    const Step_Command commands[] = {
        {"Previous Frame", {QKeySequence(Qt::Key_Comma)}, &Frame_Index::previous},
        {"Next Frame", {QKeySequence(Qt::Key_Period)}, &Frame_Index::next},
        {"Previous Keyframe",
         {QKeySequence(Qt::SHIFT | Qt::Key_Comma), QKeySequence(Qt::Key_Less),
          QKeySequence(Qt::SHIFT | Qt::Key_Less)},
         &Frame_Index::previousKeyframe},
        {"Next Keyframe",
         {QKeySequence(Qt::SHIFT | Qt::Key_Period), QKeySequence(Qt::Key_Greater),
          QKeySequence(Qt::SHIFT | Qt::Key_Greater)},
         &Frame_Index::nextKeyframe},
    };
    QMenu* go = new QMenu(QStringLiteral("&Go"), window);
    window->menuBar()->insertMenu(window->ui().menuHelp->menuAction(), go);
    QList<QAction*> steps;
    for (const Step_Command& command : commands) {
        QAction* action = go->addAction(QString::fromLatin1(command.text));
        action->setShortcuts(command.keys);
        action->setEnabled(false);
        steps << action;
        connect(action, &QAction::triggered, this, [this, step = command.step] {
            if (commandGate.isBusy() || !frameProbe->index() || i_Duration_in_Seconds == 0)
                return;
            const double now = Seconds_From_Position(i_Duration_in_Seconds, f_Timeline_Position);
            if (const std::optional<double> to = (*frameProbe->index().*step)(now))
                Show_Exact_Time(*to);
        });
    }
    go->addSeparator();
    struct Zoom_Command {
        const char* text;
        QList<QKeySequence> keys;
        double factor; // 0: the whole file
    };
    const Zoom_Command zooms[] = {
        {"Zoom In",
         {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
         2.0},
        {"Zoom Out", {QKeySequence(Qt::CTRL | Qt::Key_Minus)}, 0.5},
        {"Whole File", {QKeySequence(Qt::CTRL | Qt::Key_0)}, 0.0},
    };
    for (const Zoom_Command& zoom : zooms) {
        QAction* action = go->addAction(QString::fromLatin1(zoom.text));
        action->setShortcuts(zoom.keys);
        connect(action, &QAction::triggered, viewTimeline, [this, factor = zoom.factor] {
            if (factor > 0.0)
                viewTimeline->Zoom_Around_Playhead(factor);
            else
                viewTimeline->Zoom_Whole_File();
        });
    }
    connect(viewTimeline, &View_Video_Timeline::zoomChanged, ViewSpectrumThumbnail,
            qOverload<>(&QWidget::update));
    // While the preview plays, the zoomed timeline keeps its position in view.
    connect(&timeObserver, &QTimer::timeout, viewTimeline, [this] {
        if (player && player->playbackState() == QMediaPlayer::PlayingState &&
            i_Duration_in_Seconds != 0)
            viewTimeline->Follow_Position(static_cast<float>(
                100.0 * currentTime() / static_cast<double>(i_Duration_in_Seconds)));
    });

    const auto offer = [this, steps] {
        const bool on = frameProbe->index() && !commandGate.isBusy();
        for (QAction* action : steps)
            action->setEnabled(on);
    };
    connect(frameProbe, &Frame_Probe::indexChanged, this, offer);
    connect(&commandGate, &Command_Gate::busyChanged, this, offer);
}

// Pauses on the frame at an exact time: the playhead, the label and the preview show it.
void AppDelegate::Show_Exact_Time(double seconds)
{
    if (!player || i_Duration_in_Seconds == 0)
        return;
    timerSetCurrentPosition.stop();
    timerKeyLeft.stop();
    timerKeyRight.stop();
    timerVideoPlaying.stop();
    player->pause();
    f_Timeline_Position = Position_At_Seconds(i_Duration_in_Seconds, seconds);
    f_Current_Position = f_Timeline_Position;
    labelCurrentTime->setText(
        Time_String_From_Position(i_Duration_in_Seconds, f_Timeline_Position));
    player->setPosition(Frame_Seek_Milliseconds(seconds));
    b_Dont_Load_Thumbnails = true;
    Redraw_Timeline();
}
