#include "Test_Session.h"

#include <QSignalSpy>

Test_Session::Test_Session(const std::function<void(const QString& home)>& prepare)
{
    qputenv("HOME", home.path().toUtf8());
    qunsetenv("XDG_CONFIG_HOME");
    if (prepare)
        prepare(home.path());
    session = std::make_unique<AppDelegate>();
    auto scripted = std::make_unique<Scripted_Prompts>();
    prompts = scripted.get();
    session->setPrompts(std::move(scripted));
    session->exitProcess = [this](int status) {
        exitStatuses << status;
    };
    QObject::connect(session.get(), &AppDelegate::toolStarted,
                     [this](const QString& tool, const QStringList& arguments) {
                         toolRuns << qMakePair(tool, arguments);
                     });
    session->applicationDidFinishLaunching();
}

Test_Session::~Test_Session() = default;

std::optional<bool> Test_Session::openAndWait(const QString& path, int timeoutMs)
{
    QSignalSpy finished(session.get(), &AppDelegate::preparationFinished);
    session->OpenFile(path);
    if (finished.isEmpty() && !finished.wait(timeoutMs))
        return std::nullopt;
    return finished.first().first().toBool();
}

void Test_Session::addSegment(float start, float end)
{
    Object_Segment segment;
    segment.f_Start = start;
    segment.f_End = end;
    session->array_Segments.append(segment);
}

QString Test_Session::workFile(const QString& name) const
{
    return session->s_Output_Folder + u'/' + name;
}

QList<QStringList> Test_Session::runsWith(const QString& text) const
{
    QList<QStringList> runs;
    for (const auto& run : toolRuns)
        if (run.second.contains(text))
            runs << run.second;
    return runs;
}

AppDelegate* Clip_Session::open(const QString& path, bool* fresh)
{
    if (fresh)
        *fresh = s_Opened != path;
    if (s_Opened != path) {
        reset();
        session = std::make_unique<Test_Session>();
        if (session->openAndWait(path) != std::optional<bool>(true))
            return nullptr;
        s_Opened = path;
    }
    return &**session;
}

void Clip_Session::reset()
{
    session.reset();
    s_Opened.clear();
}
