// A console with all of its windows, on a server that answers all their requests.
#pragma once

#include "app/language.h"
#include "console/consolefixture.h"
#include "console/windowlists.h"
#include "support/wait.h"
#include "windows/openwindows.h"

namespace tarnis::testing {

using console::ServerState;
using console::WindowEntry;

/// A server that answers all requests of the windows.
class FullServer : public ScriptedServer {
public:
    FullServer()
    {
        answer("hist1d time 0 7 bins:1024", { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") });
        answer("hist1d total pairs bins:1024", { Step::doubles({ 0, 5 }, "OK: (0 40000 1024)\n") });
        answer("hist1d position 0", { Step::doubles({ 1, 2 }, "OK:\n") });
        answer("hist2d image bins:256x256", { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") });
        answer("stat", { Step::text("OK:\nevents: 12\n") });
        answer("setting", { Step::text("OK:\nrate: 12\n") });
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nrun000001_20260101/\nold/\n") });
        answer("hists",
            { Step::text("OK:\ntime: kind=1d rows=8 bins=1024 min=0 max=40000 label=Time unit=us\n"
                         "total: kind=1d rows=1 bins=1024 min=0 max=40000 label=Time unit=us\n"
                         "position: kind=1d rows=8 bins=1000 min=0 max=1000 label=Position unit=mm\n"
                         "spectrum: kind=1d rows=1 bins=100 min=0 max=100\n"
                         "image: kind=2d binsx=256 minx=0 maxx=1 binsy=256 miny=0 maxy=1\n") });
    }
};

/// A console with every window of the menu open.
struct FullConsoleFixture {
    FullConsoleFixture()
    {
        fixture.use(server);
        if (!fixture.reaches(ServerState::Up) || !isListed(fixture, "time"))
            qFatal("no server");
        for (const WindowEntry& entry : fixture.window->entries()) {
            QWidget* const window = fixture.window->openWindow(entry);
            if (!window)
                qFatal("%s does not open", qPrintable(entry.id));
            windows.append(window);
        }
        QCoreApplication::processEvents();
    }
    /// Changes the language; true when the windows have followed.
    bool isInLanguage(const QString& language) const
    {
        console::setLanguage(language);
        const QString title = language == u"de" ? QStringLiteral("Ankunftszeiten") : QStringLiteral("Arrival Times");
        return eventually([&] { return windows.constFirst()->windowTitle() == title; });
    }
    QList<QWidget*> all() const { return QList<QWidget*> { fixture.window.get() } + windows; }

    FullServer server;
    ConsoleFixture fixture;
    QList<QWidget*> windows;
};

} // namespace tarnis::testing
