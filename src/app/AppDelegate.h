#pragma once

#include "app/Command_Gate.h"
#include "app/Prompts.h"
#include "timeline/Segment_List.h"
#include "tools/Progress.h"
#include "tools/Tool_Runner.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class Frame_Probe;
class ImageView_Drop_Files;
class Segment_Editor;
class Segment_Table_Model;
class MainWindow;
class Preview_Player;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;
class QVideoWidget;
class View_Spectrum;
class View_Video_Timeline;
class Window_Concatenate_Dimension;
class Window_Export_To_Photos;
class Window_Join_Files;
class Window_Order_Concatenate;
class Window_Progress;
struct Fast_Cut_Run;
class Window_Tool_Log;

// What probing a file found: its duration text, or why there is none.
struct Duration_Probe {
    std::optional<QString> text; // " HH:MM:SS.h" as ffmpeg printed it
    bool toolStarted = true;     // false: ffmpeg itself could not be run (already reported)
};

// The editing session: the file, its working copy, durations, segments, the tools and the
// windows. Every command is a method; each is defined in the folder of its subsystem.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    // Start-up and shutdown (app/StartUp.cpp).
    void applicationDidFinishLaunching();
    void RemoveAllContentInFolder(const QString& folder);
    void Terminate_App();

    // The seam for alerts, panels and the desktop.
    Prompts& prompts() { return *prompter; }
    void setPrompts(std::unique_ptr<Prompts> replacement) { prompter = std::move(replacement); }

    // System-wide arrow keys (hotkeys/Arrow_Keys.cpp).
    void Register_Arrow_Hot_Keys();
    void Unregister_Arrow_Hot_Keys();

    // Opening and preparing a file (app/Open_File.cpp).
    void OnToolbarOpenVideo();
    void OpenFile(const QString& path);
    // Opens the file now, or once the running command has finished.
    void Open_When_Idle(const QString& path);
    // A later start of Corvanta asked for this file (empty: only to be shown).
    void Take_Handed_Over_File(const QString& path);
    void Start_Preparing(const QString& path);
    void TimerShowWindowProgressRoutine();
    void TimerHandleVideoSelectedRoutine();

    // Tools (app/Tool_Runs.cpp; the running itself is Tool_Runner's).
    std::optional<QString> Run_Tool_Blocking(const QString& tool, const QStringList& arguments);
    Duration_Probe GetMediaFileDuration(const QString& path);
    void Show_Window_Progress();
    void Close_Window_Progress();
    void Set_Progress_Value(float percentage);
    bool Run_Tool_With_Progress(const QString& tool, const QStringList& arguments, quint64 type);
    void errData(const QByteArray& chunk);
    void terminatedNotification();
    void Report_Tool_Not_Started(const QString& tool);
    // Names the command's next step on the sheet and in the tool log; seconds of media it takes.
    void Set_Step(const QString& text, double seconds = 0.0);
    void Cancel_Command();
    void OnMenuToolLog();

    // The preview (player/Player.cpp).
    void SetupVideoPreview();
    bool setUpPlaybackOfAsset();
    void stopLoadingAnimationAndHandleError(const QString& error);
    void windowWillClose();
    double duration() const;
    double currentTime() const;
    void setCurrentTime(double seconds);
    float volume() const;
    void setVolume(float level);

    // Transport (player/Transport.cpp).
    void OnVideoPlay();
    void OnVideoPause();
    void OnVideoStop();
    void OnChangeVideoPosition();
    void Set_Video_Current_Position(float percent);
    void TimerSetCurrentVideoPositionRoutine();
    void TimerVideoPlayingRoutine();
    void TimerKeyLeftRoutine();
    void TimerKeyRightRoutine();

    // Frame and keyframe steps (player/Frame_Stepping.cpp).
    void Show_Exact_Time(double seconds);

    // The segment list, its undo history and cut lists (app/Segment_Editing.cpp).
    void Record_Segment_Change(const QString& text, void (AppDelegate::*command)());
    void Record_Segment_Add();
    void Record_Segment_Remove_All();
    void OnMenuSegmentRemove();
    void OnMenuSegmentSetStart();
    void OnMenuSegmentSetEnd();
    void OnMenuExportCutList();
    void OnMenuImportCutList();
    int Selected_Segment_Row() const;

    // Segments (timeline/Segments.cpp).
    void OnToolbarAddStartPoint();
    void OnToolbarRemoveAllSegments();
    bool Point_Inside_Segment(float position) const;
    bool Empty_Segment() const;
    float Return_Left_Limit_From_Start_Position(float position) const;
    float Return_Right_Limit_From_End_Position(float position) const;
    void Calculate_Disabled_Rectangles();

    // Segment exports (export/Segment_Export.cpp, export/Trim.cpp, export/Slice.cpp).
    void OnToolbarTrim();
    void OnToolbarTrimAudio();
    void OnToolbarSlice();
    void OnToolbarSplitAudio();
    void OnToolbarConcatenateAudio();
    bool Segments_Ready_For_Export();
    bool Cut_Segments(int firstNumber, quint64 type);
    bool Join_Trimmed_Segments();
    void Save_Result(const QString& result, const QString& title, const QString& successText,
                     const QString& openButton);
    std::optional<QString> Slice_Into_Work_Folder(const QString& message);
    void Tell_Slice_Done(const QString& folder, const QString& text);

    // Concatenation (export/Concatenate.cpp).
    void OnToolbarConcatenate();
    void OK_Window_Concatenate();
    void Cancel_Window_Concatenate();
    void Concatenate_Array_MPG_To_One_File_And_Set_It_For_Edition();

    // Joining any files, losslessly where they match (export/Join_Files.cpp).
    void OnMenuFileJoinFiles();

    // Cuts in the source's own format, copying what need not be re-encoded
    // (export/Fast_Trim.cpp).
    void OnMenuFileFastTrim();
    void OnMenuFileFastSlice();
    std::optional<QStringList> Fast_Cut_Into_Work_Folder(bool slice);
    std::optional<Tool_Result> Run_Fast_Cut_Tool(const Fast_Cut_Run& run);

    // Image exports (export/Photos.cpp).
    void OnToolbarPhoto();
    std::optional<QString> Generate_Thumbnail_for_Photo(const QString& timeString);
    void OnToolbarExportToPhotos();
    void Show_Window_Export_Photos();
    void Close_Window_Export_Photos();
    std::optional<QString> Generate_Thumbnail_for_Sequence_of_Photos(const QString& timeString,
                                                                     const QString& folder,
                                                                     quint32 number);

    // Menu commands (app/Menus.cpp).
    void OnMenuFileOpenVideo();
    void OnMenuFileTrim();
    void OnMenuFileSlice();
    void OnMenuSegmentAdd();
    void OnMenuSegmentRemoveAll();
    void OnMenuHelpAppHomePage();
    void OnMenuHelpCompanyHomePage();
    void OnMenuHelpPrivacyPolicy();
    void OnMenuHelpSubmitTicket();
    void OnMenuQuit();

    // The thumbnail strip (timeline/Thumbnails.cpp).
    void Get_All_Thumbnails();
    void TimerGetThumbnailRoutine();
    bool Extract_Frame(const QString& timeString, const QString& image);
    std::optional<QImage> Generate_Thumbnail(const QString& timeStamp);
    static QImage Resize_Image_To_Fit_Size(const QImage& image, double width, double height);

    // The waveform (timeline/Waveform.cpp).
    void TimerCreateSpectrumThumbnailRoutine();
    void openFileWithFilePathURL(const QUrl& url);

    // Source file and working copy.
    QString s_File_Path;
    QUrl s_File_URL;
    QString sVideoFile;
    bool b_Use_Original_File = false;
    bool b_Open_File_Processed = false;
    quintptr bHasAudio = 0;
    QString s_Audio_File;
    QUrl s_Audio_URL;

    // Durations.
    QString s_Duration;
    quint64 i_Duration_in_Seconds = 0;
    QString s_Orig_Duration;
    quint64 i_Orig_Duration_in_Seconds = 0;
    quint64 u_Duration_Segment_in_Seconds = 0;
    quint64 u_Duration_All_Segments_in_Seconds = 0;
    quint64 u_Type_Progress = 0;

    // Positions, in percent of the duration.
    float f_Current_Position = 0.0f;
    float f_Timeline_Position = 0.0f;

    // Segments and timeline.
    Segment_List array_Segments;
    std::unique_ptr<Segment_Editor> segmentEditor;
    Segment_Table_Model* segmentModel = nullptr;
    QList<Object_Disabled_Rectangle> array_Disabled_Rectangles;
    View_Video_Timeline* viewTimeline = nullptr;

    // Thumbnails and waveform.
    QStringList array_Time_Stamps;
    QList<QImage> array_Thumbnails;
    bool b_Draw_Thumbnails = false;
    bool b_Dont_Load_Thumbnails = false;
    quint64 i_Thumbnail_Index = 0;
    QProgressBar* spinnerLoadingThumbnails = nullptr;
    QString sCurrentSpectrumFile;
    qint32 iCurrentSpectrumIndex = 0;
    View_Spectrum* ViewSpectrumThumbnail = nullptr;

    // The preview player and its controls.
    std::unique_ptr<Preview_Player> player;
    bool playerLayer = false; // the current player was given the video view
    QVideoWidget* videoWidget = nullptr;
    QWidget* playerView = nullptr;
    ImageView_Drop_Files* dropView = nullptr;
    QSlider* timeSlider = nullptr;
    QSlider* sliderVolume = nullptr;
    QProgressBar* loadingSpinner = nullptr;
    QLabel* noVideoLabel = nullptr;
    QLabel* unplayableLabel = nullptr;
    QPushButton* buttonVideoPlay = nullptr;
    QPushButton* buttonVideoPause = nullptr;
    QPushButton* buttonVideoStop = nullptr;
    QLabel* labelCurrentTime = nullptr;
    Frame_Probe* frameProbe = nullptr; // the frame and keyframe times of the working copy

    // Timers; each is one-shot and restarting it replaces a pending one.
    QTimer timerHandleVideoSelected;
    QTimer timerCreateSpectrumThumbnail;
    QTimer timerGetThumbnail;
    QTimer timerShowWindowProgressModal;
    QTimer timerVideoPlaying;
    QTimer timerSetCurrentPosition;
    QTimer timerKeyLeft;
    QTimer timerKeyRight;
    QTimer timeObserver;       // feeds timeSlider while a playable file is loaded
    QTimer timerPreviewAnswer; // gives up on a preview that never answers

    // Concatenation.
    QStringList arrayMPGs;
    QStringList array_Concatenate;
    QString s_Concatenate_Resolution;
    std::unique_ptr<Window_Order_Concatenate> p_Window_Order_Concatenate;
    std::unique_ptr<Window_Concatenate_Dimension> window_Concatenate_Dimension;
    std::unique_ptr<Window_Join_Files> p_Window_Join_Files;

    // Child processes and progress.
    bool terminated = false;
    std::unique_ptr<Window_Progress> windowProgress;
    Tool_Runner toolRunner;
    std::unique_ptr<Window_Tool_Log> p_Window_Tool_Log;

    // Windows, tools and folders.
    MainWindow* window = nullptr;
    std::unique_ptr<Window_Export_To_Photos> p_Window_Export_To_Photos;
    QString s_Output_Folder;
    QString sffmpegPath;
    QString simg2webpPath;
    std::optional<QString> constantShortcutManager;     // the left arrow's monitor token
    std::optional<QString> constantInsertTextPopupMenu; // the right arrow's monitor token

    // One command at a time; what the window offers follows it.
    Command_Gate commandGate;

    // How the process ends; tests replace it to observe the exit status.
    std::function<void(int)> exitProcess;

signals:
    void toolStarted(const QString& tool, const QStringList& arguments);
    void seekRequested(qint64 milliseconds);
    // The opened file is prepared (true), or it could not be and the session is empty (false).
    void preparationFinished(bool ready);

private:
    void Preview_Answered(bool playable);
    void Teardown_Player();
    void Follow_Item_Status();
    void Follow_Playback_State();
    void Abandon_Opened_File(bool tellUnreadable);
    void End_Preparation(bool ready);
    void Wire_Segment_Editing();
    void Wire_Frame_Steps();
    void Show_Selected_Segment();
    void Finish_Cancelled_Command();
    void Tell_Tool_Failed(const Tool_Run& run);
    void Tell_File_Unreadable(const QString& path);
    void Tell_Opening_Failed(const QString& headline, const QString& text);
    bool Abandoned_After_Failed_Run();
    void Redraw_Timeline();

    std::unique_ptr<MainWindow> mainWindow;
    std::unique_ptr<Prompts> prompter;
    int i_Item_Status = 0;           // 0 unknown, 1 ready to play, 2 failed
    quint64 u_Thumbnail_Chain = 0;   // which run of the thumbnail chain is current
    bool b_Preparing = false;        // the opened file's preparation holds the command gate
    bool b_Cancel_Requested = false; // the running command stops at its next step
    int i_Last_Progress_Run = -1;    // the tool log's entry of the last run under the sheet
    Job_Share fastCutShare;          // the running fast cut run's part of the whole cut
    QMap<QString, QDateTime> map_Work_Folder_Before; // the work folder when the sheet came up
};
