#include "app/commandline.h"

#include "app/language.h"

#include <QCommandLineParser>

#include <array>

namespace console {

namespace {

constexpr char helpText[] =
    R"(Usage: tarnis-console [--local PROGRAM | --remote HOST:PORT] [--prompt TEXT] [--log FILE]
                      [--language CODE | --tour DIR]

An operator's console for a data-acquisition server. Without --local and --remote it uses the server of the last run,
and in the first run the simulated server tarnis-simserver that is installed beside it.

  --local PROGRAM     start PROGRAM as the server on this machine; it is ended with the console
  --remote HOST:PORT  connect to a server that runs already; it is left running
  --prompt TEXT       what the server writes when it waits for a command, "> " for a server that was not used last;
                      \n \r \t \e \\ and \xHH stand for bytes that are hard to type
  --log FILE          append a log of everything that goes over the connection to FILE
  --language CODE     show all texts in English (en) or German (de) in this run; without it as chosen in the menu View,
                      and at first as on the desktop
  --tour DIR          open every window on live data, write a picture of each step and report.txt to DIR, and exit:
                      with 0 if all went well, with 1 if not; needs no display
  --help              print this text
  --version           print the version

Exit status: 0 for a normal end, 1 if a tour failed or there is no display, 2 for a mistake on the command line.
)";

/// Options of QApplication that have a value. QApplication reads them itself.
bool isQtOptionWithValue(const QString& name)
{
    static constexpr std::array names { "platform", "platformpluginpath", "platformtheme", "plugin", "style",
        "stylesheet", "display", "session", "qwindowgeometry", "qwindowicon", "qwindowtitle", "fontengine" };
    return std::any_of(names.begin(), names.end(), [&](const char* known) { return name == QLatin1String(known); });
}

QStringList withoutQtOptions(const QStringList& arguments)
{
    QStringList kept;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const QString name = argument.startsWith(u"--") ? argument.mid(2) : argument.mid(1);
        if (i > 0 && argument.startsWith(u'-') && isQtOptionWithValue(name))
            ++i;
        else if (i == 0 || (argument != u"-reverse" && argument != u"--reverse"))
            kept.append(argument);
    }
    return kept;
}

constexpr std::array valueOptions { "local", "remote", "prompt", "log", "language", "tour" };

CommandLine mistake(const QString& text)
{
    return { CommandLine::Action::Mistake, {}, text };
}

int hexDigit(QChar c)
{
    return int(QStringView(u"0123456789abcdef").indexOf(c.toLower()));
}

} // namespace

std::optional<QByteArray> promptFromText(const QString& text)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != u'\\') {
            const qsizetype end = text.indexOf(u'\\', i);
            const qsizetype length = (end < 0 ? text.size() : end) - i;
            bytes += text.mid(i, length).toUtf8();
            i += length - 1;
            continue;
        }
        const QChar escape = ++i < text.size() ? text.at(i) : QChar();
        static constexpr QStringView letters = u"nrte\\";
        static constexpr char meanings[] = "\n\r\t\x1b\\";
        if (const qsizetype known = letters.indexOf(escape); !escape.isNull() && known >= 0) {
            bytes += meanings[known];
        } else if (escape == u'x' && i + 2 < text.size() && hexDigit(text.at(i + 1)) >= 0
            && hexDigit(text.at(i + 2)) >= 0) {
            bytes += static_cast<char>(hexDigit(text.at(i + 1)) * 16 + hexDigit(text.at(i + 2)));
            i += 2;
        } else {
            return std::nullopt;
        }
    }
    return bytes.isEmpty() ? std::nullopt : std::optional(bytes);
}

QString promptToText(const QByteArray& prompt)
{
    const QString decoded = QString::fromUtf8(prompt);
    const bool isText = decoded.toUtf8() == prompt;
    QString text;
    for (const char byte : prompt) {
        const auto value = static_cast<unsigned char>(byte);
        if (byte == '\\')
            text += QLatin1String("\\\\");
        else if (byte == '\n')
            text += QLatin1String("\\n");
        else if (value < 0x20 || value >= 0x7f)
            text += QStringLiteral("\\x%1").arg(int(value), 2, 16, QLatin1Char('0'));
        else
            text += QLatin1Char(byte);
    }
    const bool isPrintable =
        isText && std::all_of(decoded.begin(), decoded.end(), [](QChar c) { return c.isPrint() && c != u'\\'; });
    if (isPrintable)
        text = decoded;
    if (text.endsWith(u' ')) // a trailing space would be invisible
        text.replace(text.size() - 1, 1, QStringLiteral("\\x20"));
    return text;
}

std::optional<ServerChoice> remoteFromText(const QString& text)
{
    const qsizetype colon = text.lastIndexOf(u':');
    if (colon < 1)
        return std::nullopt;
    QString host = text.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    else if (host.contains(u':'))
        return std::nullopt;
    bool isNumber = false;
    const quint16 port = QStringView(text).mid(colon + 1).toUShort(&isNumber);
    if (!isNumber || port == 0 || host.isEmpty() || host.contains(u' '))
        return std::nullopt;
    return ServerChoice { ServerChoice::Kind::Remote, {}, host, port };
}

namespace {

/// The value of an option; empty if it occurs twice with different values.
std::optional<QString> singleValue(const QCommandLineParser& parser, const char* name)
{
    QStringList values = parser.values(QLatin1String(name));
    values.removeDuplicates();
    return values.size() == 1 ? std::optional(values.first()) : std::nullopt;
}

/// Fills `options` from the parser; returns an error, or an empty text.
QString readOptions(const QCommandLineParser& parser, Options& options)
{
    for (const char* name : valueOptions) {
        if (!parser.isSet(QLatin1String(name)))
            continue;
        const std::optional<QString> value = singleValue(parser, name);
        if (!value)
            return QStringLiteral("--%1 is given twice").arg(QLatin1String(name));
        if (value->isEmpty())
            return QStringLiteral("--%1 needs a value that is not empty").arg(QLatin1String(name));
    }
    if (parser.isSet(QStringLiteral("local")) && parser.isSet(QStringLiteral("remote")))
        return QStringLiteral("--local and --remote exclude each other");
    if (parser.isSet(QStringLiteral("local")))
        options.server = ServerChoice { ServerChoice::Kind::Local, parser.value(QStringLiteral("local")), {}, 0 };
    if (parser.isSet(QStringLiteral("remote"))) {
        const QString address = parser.value(QStringLiteral("remote"));
        options.server = remoteFromText(address);
        if (!options.server)
            return QStringLiteral("'%1' is not HOST:PORT with a port from 1 to 65535").arg(address);
    }
    if (parser.isSet(QStringLiteral("prompt"))) {
        const QString prompt = parser.value(QStringLiteral("prompt"));
        options.prompt = promptFromText(prompt);
        if (!options.prompt)
            return QStringLiteral("the prompt '%1' contains an escape other than \\n \\r \\t \\e \\\\ \\xHH")
                .arg(prompt);
    }
    options.language = parser.value(QStringLiteral("language"));
    if (!options.language.isEmpty() && !hasLanguage(options.language))
        return QStringLiteral("there is no language '%1'; en and de are there").arg(options.language);
    if (parser.isSet(QStringLiteral("language")) && parser.isSet(QStringLiteral("tour")))
        return QStringLiteral("--language and --tour exclude each other: the tour is in English");
    options.logFile = parser.value(QStringLiteral("log"));
    options.tourDirectory = parser.value(QStringLiteral("tour"));
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QString value = QStringLiteral("value");
    for (const char* name : valueOptions)
        parser.addOption({ QString::fromLatin1(name), QString(), value });
    parser.addOption(QCommandLineOption(QStringList { QStringLiteral("h"), QStringLiteral("help") }));
    parser.addOption(QCommandLineOption(QStringList { QStringLiteral("v"), QStringLiteral("version") }));

    if (!parser.parse(withoutQtOptions(arguments))) {
        QString problem = parser.errorText();
        while (problem.endsWith(u'.'))
            problem.chop(1);
        return mistake(problem);
    }
    if (parser.isSet(QStringLiteral("help")))
        return { CommandLine::Action::Help, {}, QString::fromLatin1(helpText) };
    if (parser.isSet(QStringLiteral("version")))
        return { CommandLine::Action::Version, {}, QStringLiteral("tarnis-console " TARNIS_CONSOLE_VERSION "\n") };
    if (!parser.positionalArguments().isEmpty())
        return mistake(QStringLiteral("'%1' is not an option").arg(parser.positionalArguments().constFirst()));

    CommandLine commandLine;
    if (const QString problem = readOptions(parser, commandLine.options); !problem.isEmpty())
        return mistake(problem);
    return commandLine;
}

} // namespace console
