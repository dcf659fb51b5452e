#include "export/Window_Export_To_Photos.h"

#include "app/AppDelegate.h"
#include "export/Image_Export.h"
#include "ui_Window_Export_To_Photos.h"

#include <QFile>
#include <QFileInfo>

Window_Export_To_Photos::Window_Export_To_Photos(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent, Qt::Sheet)
    , session(delegate)
    , ui(std::make_unique<Ui::Window_Export_To_Photos>())
{
    ui->setupUi(this);
    textInterval = ui->textInterval;
    pbar = ui->pbar;
    radio1 = ui->radio1;
    radio2 = ui->radio2;
    txtLoops = ui->txtLoops;
    setWindowModality(Qt::WindowModal);
    connect(radio1, &QRadioButton::toggled, this, &Window_Export_To_Photos::OnChangeRadio1);
    connect(radio2, &QRadioButton::toggled, this, &Window_Export_To_Photos::OnChangeRadio2);
    connect(ui->buttonStart, &QPushButton::clicked, this, &Window_Export_To_Photos::OnStart);
    connect(ui->buttonClose, &QPushButton::clicked, this, &Window_Export_To_Photos::OnActionClose);
    connect(ui->buttonCancel, &QPushButton::clicked, this, [this] { b_Cancelled = true; });
}

Window_Export_To_Photos::~Window_Export_To_Photos() = default;

// Turning a button on turns the other off; turning one off does nothing.
void Window_Export_To_Photos::OnChangeRadio1()
{
    if (!radio1->isChecked())
        return;
    radio2->setChecked(false);
    txtLoops->setEnabled(false);
}

void Window_Export_To_Photos::OnChangeRadio2()
{
    if (!radio2->isChecked())
        return;
    radio1->setChecked(false);
    txtLoops->setEnabled(true);
}

// While the frames are made, closing means Cancel: the series stops after the current frame.
void Window_Export_To_Photos::OnActionClose()
{
    if (b_Running)
        b_Cancelled = true;
    else
        session.Close_Window_Export_Photos();
}

void Window_Export_To_Photos::Show_Running(bool running)
{
    b_Running = running;
    b_Cancelled = false;
    ui->buttonStart->setEnabled(!running);
    ui->buttonClose->setVisible(!running);
    ui->buttonCancel->setVisible(running);
}

void Window_Export_To_Photos::OnStart()
{
    const int interval = Leading_Integer(textInterval->text());
    if (interval < 1)
        return;
    const Command_Gate::Scope exporting(session.commandGate);
    const std::optional<QString> folder = session.prompts().chooseFolder(
        {QStringLiteral("Select a folder to save the images"), {}, {}});
    if (!folder)
        return;
    const QList<quint64> times = Frame_Series_Times(session.i_Duration_in_Seconds, interval);
    quint32 number = 0;
    Show_Running(true);
    for (const quint64 t : times) {
        if (!session.Generate_Thumbnail_for_Sequence_of_Photos(Whole_Seconds_Time_String(t),
                                                               *folder, ++number) &&
            QFileInfo::exists(session.s_File_Path))
            break; // ffmpeg could not be run; the person has been told
        pbar->setValue(Frame_Series_Progress(t, session.i_Duration_in_Seconds));
        pbar->repaint();
        if (b_Cancelled)
            break;
    }
    const bool cancelled = b_Cancelled;
    Show_Running(false);
    pbar->setValue(0);
    pbar->repaint();
    if (cancelled)
        return; // the frames written so far stay
    if (radio1->isChecked())
        session.prompts().openWithDesktop(QUrl::fromLocalFile(*folder));
    else
        exportWebp(*folder, static_cast<int>(times.size()));
    session.Close_Window_Export_Photos();
}

// The frames that exist, in order, up to the first missing one, made into one animated WebP.
void Window_Export_To_Photos::exportWebp(const QString& folder, int frameCount)
{
    QStringList frames;
    for (quint32 k = 1; k <= static_cast<quint32>(frameCount); ++k) {
        const QString frame = Frame_File_Path(folder, k);
        if (!QFileInfo::exists(frame))
            break;
        frames << frame;
    }
    const QString webp = folder + QStringLiteral("/output.webp");
    const std::optional<QString> log = session.Run_Tool_Blocking(
        session.simg2webpPath, Webp_Arguments(Leading_Integer(txtLoops->text()), frames, webp));
    if (!log)
        return;
    qInfo("%s", qUtf8Printable(*log));
    const std::optional<QString> target =
        session.prompts().chooseSavePath({QStringLiteral("Select a folder to save the WebP image"),
                                          {},
                                          QStringLiteral("output.webp")});
    if (!target)
        return;
    // Unlike a single captured frame, an existing file here is replaced; but the image itself,
    // saved onto its own path, is kept as it is.
    if (QFileInfo(*target).canonicalFilePath() != QFileInfo(webp).canonicalFilePath()) {
        QFile::remove(*target);
        QFile::rename(webp, *target);
    }
    session.prompts().showAlert(
        {QStringLiteral("Success"), QStringLiteral("Success"), {QStringLiteral("OK")}});
}
