#include "app/AppDelegate.h"

#include "app/Help_Pages.h"

#include <QCoreApplication>

// The menu duplicates the toolbar's most used commands; each item only forwards.

void AppDelegate::OnMenuFileOpenVideo()
{
    OnToolbarOpenVideo();
}

void AppDelegate::OnMenuFileTrim()
{
    OnToolbarTrim();
}

void AppDelegate::OnMenuFileSlice()
{
    OnToolbarSlice();
}

void AppDelegate::OnMenuSegmentAdd()
{
    OnToolbarAddStartPoint();
}

void AppDelegate::OnMenuSegmentRemoveAll()
{
    OnToolbarRemoveAllSegments();
}

void AppDelegate::OnMenuQuit()
{
    Terminate_App();
}

namespace {

QUrl helpPage(const char* page)
{
    return Help_Page_Url(QString::fromLatin1(page), QCoreApplication::applicationDirPath());
}

} // namespace

void AppDelegate::OnMenuHelpAppHomePage()
{
    prompts().openWithDesktop(helpPage("guide.html"));
}

void AppDelegate::OnMenuHelpCompanyHomePage()
{
    prompts().openWithDesktop(helpPage("about.html"));
}

void AppDelegate::OnMenuHelpPrivacyPolicy()
{
    prompts().openWithDesktop(helpPage("privacy.html"));
}

void AppDelegate::OnMenuHelpSubmitTicket()
{
    prompts().openWithDesktop(helpPage("report.html"));
}
