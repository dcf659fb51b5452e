#include "export/Window_Join_Files.h"

#include "app/AppDelegate.h"
#include "app/Media_Files.h"
#include "tools/Progress.h"
#include "tools/TimeStrings.h"
#include "tools/Tool_Runner.h"
#include "ui_Window_Join_Files.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QRegularExpression>
#include <QTreeWidget>

namespace {

constexpr int Entry_Role = Qt::UserRole;

QString sizeText(const Media_Info& file)
{
    const QString size = QStringLiteral("%1x%2").arg(file.width).arg(file.height);
    return file.sampleAspect == QStringLiteral("1:1")
               ? size
               : QStringLiteral("%1 (sample aspect %2)").arg(size, file.sampleAspect);
}

QString codecsText(const Media_Info& file)
{
    return file.hasAudio ? QStringLiteral("%1 / %2").arg(file.videoCodec, file.audioCodec)
                         : QStringLiteral("%1 / no sound").arg(file.videoCodec);
}

// The re-encoding frames offered besides the first file's: size, then rate as ffmpeg reads it.
const QList<QPair<QString, QSize>> frameSizes = {
    {QStringLiteral("3840x2160"), {3840, 2160}}, {QStringLiteral("1920x1080"), {1920, 1080}},
    {QStringLiteral("1280x720"), {1280, 720}},   {QStringLiteral("854x480"), {854, 480}},
    {QStringLiteral("720x576"), {720, 576}},     {QStringLiteral("640x480"), {640, 480}},
    {QStringLiteral("640x360"), {640, 360}}};
const QList<QPair<QString, QString>> frameRates = {
    {QStringLiteral("23.976 fps"), QStringLiteral("24000/1001")},
    {QStringLiteral("24 fps"), QStringLiteral("24/1")},
    {QStringLiteral("25 fps"), QStringLiteral("25/1")},
    {QStringLiteral("29.97 fps"), QStringLiteral("30000/1001")},
    {QStringLiteral("30 fps"), QStringLiteral("30/1")},
    {QStringLiteral("50 fps"), QStringLiteral("50/1")},
    {QStringLiteral("59.94 fps"), QStringLiteral("60000/1001")},
    {QStringLiteral("60 fps"), QStringLiteral("60/1")}};

// The last lines ffmpeg wrote that are not its "-progress" reports.
QString lastWords(const QByteArray& tail)
{
    static const QRegularExpression report(QStringLiteral("^[a-z_0-9]+=\\S*$"));
    QStringList lines;
    for (const QString& line : QString::fromUtf8(tail).split(u'\n', Qt::SkipEmptyParts))
        if (!report.match(line.trimmed()).hasMatch())
            lines << line.trimmed();
    return lines.mid(std::max<qsizetype>(0, lines.size() - 4)).join(u'\n');
}

} // namespace

Window_Join_Files::Window_Join_Files(AppDelegate& delegate, QWidget* parent)
    : QDialog(parent)
    , session(delegate)
    , ui(std::make_unique<Ui::Window_Join_Files>())
{
    ui->setupUi(this);
    ui->comboSize->addItem(QStringLiteral("As the first file"));
    for (const auto& [text, size] : frameSizes)
        ui->comboSize->addItem(text, size);
    ui->comboRate->addItem(QStringLiteral("As the first file"));
    for (const auto& [text, rate] : frameRates)
        ui->comboRate->addItem(text, rate);
    ui->treeFiles->viewport()->installEventFilter(this);

    connect(ui->buttonAdd, &QPushButton::clicked, this, &Window_Join_Files::OnAddFiles);
    connect(ui->buttonRemove, &QPushButton::clicked, this, &Window_Join_Files::OnRemove);
    connect(ui->buttonUp, &QPushButton::clicked, this, &Window_Join_Files::OnUp);
    connect(ui->buttonDown, &QPushButton::clicked, this, &Window_Join_Files::OnDown);
    connect(ui->buttonJoin, &QPushButton::clicked, this, &Window_Join_Files::OnJoin);
    connect(ui->buttonClose, &QPushButton::clicked, this, &Window_Join_Files::reject);
    connect(ui->comboSize, &QComboBox::currentIndexChanged, this, &Window_Join_Files::Update_Plan);
    connect(ui->comboRate, &QComboBox::currentIndexChanged, this, &Window_Join_Files::Update_Plan);
    // Rows moved by dragging arrive as rows removed and inserted.
    QAbstractItemModel* model = ui->treeFiles->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &Window_Join_Files::Update_Plan);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &Window_Join_Files::Update_Plan);
    connect(model, &QAbstractItemModel::rowsMoved, this, &Window_Join_Files::Update_Plan);
    connect(&session.commandGate, &Command_Gate::busyChanged, this,
            &Window_Join_Files::Update_Plan);
    Update_Plan();
}

Window_Join_Files::~Window_Join_Files() = default;

void Window_Join_Files::OnAddFiles()
{
    Add_Files(session.prompts().chooseFiles(
        {QStringLiteral("Choose the files to join"), Accepted_Video_Extensions(), {}}, true));
}

void Window_Join_Files::Add_Files(const QStringList& paths)
{
    const QString ffprobe =
        Locate_Ffprobe(session.sffmpegPath, QCoreApplication::applicationDirPath());
    QStringList refused;
    for (const QString& chosen : paths) {
        const QString path = QFileInfo(chosen).absoluteFilePath();
        const Media_Probe_Result probe = Probe_Media_File(session.toolRunner, ffprobe, path);
        if (!probe.toolStarted) {
            session.Report_Tool_Not_Started(ffprobe);
            return;
        }
        if (!probe.info) {
            refused << QStringLiteral("%1: %2.").arg(QFileInfo(path).fileName(), probe.refusal);
            continue;
        }
        const Media_Info& file = *probe.info;
        const int entry = i_Next_Entry++;
        entries.insert(entry, file);
        auto* row = new QTreeWidgetItem(
            {QFileInfo(path).fileName(),
             Time_String_From_Seconds(static_cast<float>(file.duration)), sizeText(file),
             QStringLiteral("%1 fps").arg(Rate_Text(file.frameRate)), codecsText(file)});
        row->setData(0, Entry_Role, entry);
        row->setToolTip(0, path);
        // Rows take no drops, so a dragged row lands between two others, never inside one.
        row->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled);
        ui->treeFiles->addTopLevelItem(row);
    }
    for (int column = 0; column < ui->treeFiles->columnCount(); ++column)
        ui->treeFiles->resizeColumnToContents(column);
    if (refused.isEmpty())
        return;
    session.prompts().showAlert({refused.size() == 1
                                     ? QStringLiteral("This file cannot be joined")
                                     : QStringLiteral("These files cannot be joined"),
                                 refused.join(u'\n'),
                                 {QStringLiteral("OK")}});
}

QList<Media_Info> Window_Join_Files::files() const
{
    QList<Media_Info> shown;
    for (int row = 0; row < ui->treeFiles->topLevelItemCount(); ++row)
        shown << entries.value(ui->treeFiles->topLevelItem(row)->data(0, Entry_Role).toInt());
    return shown;
}

void Window_Join_Files::OnRemove()
{
    const QList<QTreeWidgetItem*> selected = ui->treeFiles->selectedItems();
    for (QTreeWidgetItem* row : selected) {
        entries.remove(row->data(0, Entry_Role).toInt());
        delete row;
    }
}

void Window_Join_Files::OnUp()
{
    moveSelected(-1);
}

void Window_Join_Files::OnDown()
{
    moveSelected(1);
}

// Moves the selected row by one place; it stays selected.
void Window_Join_Files::moveSelected(int step)
{
    const QList<QTreeWidgetItem*> selected = ui->treeFiles->selectedItems();
    if (selected.isEmpty())
        return;
    QTreeWidget* tree = ui->treeFiles;
    const int row = tree->indexOfTopLevelItem(selected.constFirst());
    if (row + step < 0 || row + step >= tree->topLevelItemCount())
        return;
    QTreeWidgetItem* moved = tree->takeTopLevelItem(row);
    tree->insertTopLevelItem(row + step, moved);
    tree->setCurrentItem(moved);
    moved->setSelected(true);
}

std::optional<Join_Frame> Window_Join_Files::chosenFrame() const
{
    if (ui->comboSize->currentIndex() <= 0 && ui->comboRate->currentIndex() <= 0)
        return std::nullopt;
    Join_Frame frame = Join_Planner(files()).frame();
    if (ui->comboSize->currentIndex() > 0) {
        const QSize size = ui->comboSize->currentData().toSize();
        frame.width = size.width();
        frame.height = size.height();
    }
    if (ui->comboRate->currentIndex() > 0)
        frame.frameRate = ui->comboRate->currentData().toString();
    return frame;
}

// Says how the files will be joined and why, and offers what can be done now.
void Window_Join_Files::Update_Plan()
{
    const QList<Media_Info> joined = files();
    const bool enough = joined.size() >= 2;
    const bool reencode = enough && Join_Planner(joined).mode() == Join_Mode::Reencode;
    if (enough)
        ui->labelPlan->setText(Join_Planner(joined, chosenFrame()).reason());
    else
        ui->labelPlan->setText(joined.isEmpty()
                                   ? QStringLiteral("Add two files or more to join them.")
                                   : QStringLiteral("Add one more file to join."));
    ui->comboSize->setEnabled(reencode && !b_Joining);
    ui->comboRate->setEnabled(reencode && !b_Joining);
    ui->buttonJoin->setEnabled(enough && !b_Joining && !session.commandGate.isBusy());
}

void Window_Join_Files::setJoining(bool joining)
{
    b_Joining = joining;
    const QList<QWidget*> controls = {ui->treeFiles, ui->buttonAdd, ui->buttonRemove, ui->buttonUp,
                                      ui->buttonDown};
    for (QWidget* control : controls)
        control->setEnabled(!joining);
    // While the files are joined, Close (and Escape) cancels the join.
    ui->buttonClose->setText(joining ? QStringLiteral("Cancel") : QStringLiteral("Close"));
    Update_Plan();
}

void Window_Join_Files::OnJoin()
{
    const QList<Media_Info> joined = files();
    if (joined.size() < 2 || b_Joining || session.commandGate.isBusy())
        return;
    const Join_Planner plan(joined, chosenFrame());
    const QFileInfo first(joined.constFirst().path);
    const QString proposed = first.dir().filePath(
        QStringLiteral("%1-joined.%2").arg(first.completeBaseName(), plan.outputSuffix()));
    std::optional<QString> output =
        session.prompts().chooseSavePath({QStringLiteral("Save the Joined File"), {}, proposed});
    if (!output)
        return;
    QString path = QFileInfo(*output).absoluteFilePath();
    if (QFileInfo(path).suffix().isEmpty())
        path += u'.' + plan.outputSuffix();
    for (const Media_Info& file : joined) {
        if (QFileInfo(file.path).canonicalFilePath() == QFileInfo(path).canonicalFilePath()) {
            session.prompts().showAlert(
                {QStringLiteral("The joined file cannot replace one of the files it joins"),
                 QStringLiteral("Choose another name than %1.").arg(QFileInfo(path).fileName()),
                 {QStringLiteral("OK")}});
            return;
        }
    }

    bool joinedWell = false;
    {
        const Command_Gate::Scope running(session.commandGate);
        setJoining(true);
        joinedWell = Run_Join(plan, path);
        setJoining(false);
    }
    if (joinedWell)
        Tell_Joined(path);
}

// One ffmpeg run; the window shows how far it has come. False when it failed (the person has
// been told).
bool Window_Join_Files::Run_Join(const Join_Planner& plan, const QString& output)
{
    const QString listPath =
        QDir(session.s_Output_Folder).filePath(QStringLiteral("join-files-list.txt"));
    if (plan.mode() == Join_Mode::Stream_Copy) {
        QFile list(listPath);
        if (!list.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            list.write(plan.concatList().toUtf8()) < 0) {
            session.prompts().showAlert(
                {QStringLiteral("The files could not be joined"),
                 QStringLiteral("Corvanta could not write %1.").arg(listPath),
                 {QStringLiteral("OK")}});
            return false;
        }
    }

    ui->progressBar->setValue(0);
    const double total = plan.totalSeconds();
    const QStringList arguments = plan.arguments(listPath, output);
    // The session's runner: the run is in the Tool Log, and Cancel ends it.
    const QMetaObject::Connection progress =
        connect(&session.toolRunner, &Tool_Runner::standardErrorData, this,
                [this, total](const QByteArray& chunk) {
                    if (const std::optional<double> done =
                            Join_Planner::progressSeconds(QString::fromUtf8(chunk)))
                        ui->progressBar->setValue(
                            Progress_Bar_Value(static_cast<float>(*done * 100.0 / total)));
                });
    session.Set_Step(QStringLiteral("Joining files"));
    const Tool_Result result = session.toolRunner.run(session.sffmpegPath, arguments);
    disconnect(progress);

    if (!result.started) {
        session.Report_Tool_Not_Started(session.sffmpegPath);
        return false;
    }
    if (result.cancelled || result.killed || result.exitCode != 0) {
        QFile::remove(output);
        ui->progressBar->setValue(0);
        if (!result.cancelled)
            session.prompts().showAlert(
                {QStringLiteral("The files could not be joined"),
                 QStringLiteral("ffmpeg stopped with status %1: %2")
                     .arg(result.exitCode)
                     .arg(lastWords(session.toolRunner.log().run(result.logEntry).errorTail)),
                 {QStringLiteral("OK")}});
        return false;
    }
    ui->progressBar->setValue(100);
    return true;
}

void Window_Join_Files::Tell_Joined(const QString& output)
{
    const int answer = session.prompts().showAlert(
        {QStringLiteral("Success"),
         QStringLiteral("The files were joined into %1.").arg(QFileInfo(output).fileName()),
         {QStringLiteral("Open for Editing"), QStringLiteral("Open Output Folder"),
          QStringLiteral("Close")}});
    if (answer == Prompts::First_Button) {
        close();
        session.Open_When_Idle(output);
    } else if (answer == Prompts::First_Button + 1) {
        session.prompts().openWithDesktop(QUrl::fromLocalFile(QFileInfo(output).absolutePath()));
    }
}

void Window_Join_Files::reject()
{
    if (b_Joining)
        session.toolRunner.cancel();
    else
        QDialog::reject();
}

void Window_Join_Files::closeEvent(QCloseEvent* event)
{
    if (!b_Joining) {
        QDialog::closeEvent(event);
        return;
    }
    event->ignore();
    session.toolRunner.cancel();
}

// Files dropped from elsewhere are added; rows dragged within the list move.
bool Window_Join_Files::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    if (watched != ui->treeFiles->viewport() ||
        (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop))
        return QDialog::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    if (drop->source() == ui->treeFiles || !drop->mimeData()->hasUrls())
        return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop) {
        QStringList paths;
        for (const QUrl& url : drop->mimeData()->urls())
            if (url.isLocalFile())
                paths << url.toLocalFile();
        Add_Files(paths);
    }
    return true;
}
