#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

/// The user guide's tables of messages against the texts in the sources, both ways.
namespace {
/// A text as the guide writes it: "…" for what is filled in and behind a colon, on one line.
QString asInTheGuide(QString text)
{
    static const QRegularExpression place(QStringLiteral("%[0-9]"));
    text.replace(place, QStringLiteral("\u2026"));
    text.replace(QStringLiteral("\\n"), QStringLiteral(" "));
    text.replace(QStringLiteral("\\\""), QStringLiteral("\""));
    if (text.endsWith(QStringLiteral(": ")))
        text += QStringLiteral("\u2026");
    return text.trimmed();
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The string literals of a source, neighbours joined, with the 30 characters before each. Comments
/// and includes are left out.
QList<std::pair<QString, QString>> literalsOf(const QString &source)
{
    static const QRegularExpression token(
        QStringLiteral("//"
                       "[^\\n]*|#include[^\\n]*|'(?:[^'\\\\]|\\\\.)'|\"(?:[^\"\\\\\\n]|\\\\.)*\"(?:"
                       "\\s*\"(?:[^\"\\\\\\n]|\\\\.)*\")*"));
    static const QRegularExpression piece(QStringLiteral("\"((?:[^\"\\\\\\n]|\\\\.)*)\""));
    QList<std::pair<QString, QString>> literals;
    for (auto found = token.globalMatch(source); found.hasNext();) {
        const auto match = found.next();
        if (!match.captured().startsWith(QLatin1Char('"')))
            continue;
        QString text;
        for (auto pieces = piece.globalMatch(match.captured()); pieces.hasNext();)
            text += pieces.next().captured(1);
        const auto begin = std::max<qsizetype>(0, match.capturedStart() - 30);
        literals.append({source.mid(begin, match.capturedStart() - begin).simplified(), text});
    }
    return literals;
}

/// Whether a literal reads like words for the user: two words, or one and what is filled in.
bool isSentence(const QString &text)
{
    static const QRegularExpression words(QStringLiteral("[A-Za-z0-9;:,?)%]+ [A-Za-z%(]"));
    return words.match(text).hasMatch();
}

/// What reads like a message and is none: it goes elsewhere than to the user, or is a caption.
const QSet<QString> noMessages = {
    // captions of windows and dialogs, names of things, what is read aloud
    QStringLiteral("Norvik\\u00ae Pelora Utility"),
    QStringLiteral("Save Settings File"),
    QStringLiteral("Select file"),
    QStringLiteral("Text files (*.txt)"),
    QStringLiteral("Segoe UI"),
    QStringLiteral("Channel %1"),
    QStringLiteral("%1, row %2, column %3"),
    QStringLiteral(", inactive"),
    // what --help says
    QStringLiteral("Configures the Norvik Pelora keyboard-and-mouse switch."),
    QStringLiteral("Keep everything that passes on the link in FILE, as JSON lines without module "
                   "passwords."),
    QStringLiteral("Show the version and end."),
    QStringLiteral("Show this help and end."),
    QStringLiteral("\\nQt's own options, such as -platform and -style, are taken as well.\\n"),
    // help where the layout is arranged
    QStringLiteral("Drag a display with the mouse, or move the one in focus with Ctrl and an arrow "
                   "key.\\nOne that is dropped on another goes back"),
    // what the switch says
    QStringLiteral("Saving horizontal dimension as"),
    // for the event log, in pieces
    QStringLiteral("IPv4 address"),
    QStringLiteral("subnet mask"),
    QStringLiteral("default gateway"),
    QStringLiteral("The name of custom setting "),
    QStringLiteral(" has blanks; the resolution lists leave them out"),
    QStringLiteral(" is too long for its command and was shortened"),
    QStringLiteral("The layout could not be read back: "),
    QStringLiteral("\\\" cannot be read from \\\""),
    // a form
    QStringLiteral("yyyy-MM-dd hh:mm:ss"),
    QStringLiteral("%1 %2 "),
};
} // namespace

class UserGuideTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        readGuide();
        readSources();
        readForms();
        QVERIFY2(rows_.size() > 50, "the guide's tables were not understood");
        QVERIFY2(messages_.size() > 50, "the sources were not understood");
    }

    void everyMessageHasItsRow()
    {
        QStringList missing;
        for (const QString &message : std::as_const(messages_))
            if (!rows_.contains(message))
                missing.append(message);
        missing.sort();
        QVERIFY2(missing.isEmpty(),
                 qPrintable(QStringLiteral("docs/user-guide.md says nothing of:\n") +
                            missing.join(QLatin1Char('\n'))));
    }

    void everyRowIsAMessage()
    {
        QStringList stale;
        for (const QString &row : std::as_const(rows_))
            if (!messages_.contains(row) && !texts_.contains(row))
                stale.append(row);
        stale.sort();
        QVERIFY2(stale.isEmpty(),
                 qPrintable(QStringLiteral("no source says:\n") + stale.join(QLatin1Char('\n'))));
    }

    void everyRowSaysWhatItMeans()
    {
        for (auto row = meanings_.cbegin(); row != meanings_.cend(); ++row)
            QVERIFY2(row.value().size() > 10, qPrintable(row.key()));
    }

    void theRowOfAQuestionNamesItsButtons()
    {
        QVERIFY(!questions_.isEmpty());
        for (auto question = questions_.cbegin(); question != questions_.cend(); ++question)
            QCOMPARE(namedIn(remedies_.value(question.key())), question.value());
    }

    void whatARowTellsToPressIsInTheWindow()
    {
        for (auto row = remedies_.cbegin(); row != remedies_.cend(); ++row) {
            if (questions_.contains(row.key()))
                continue;
            const QSet<QString> named = namedIn(row.value());
            for (const QString &text : named)
                QVERIFY2(shown_.contains(text), qPrintable(row.key() + QLatin1Char(' ') + text));
        }
    }

    void nothingIsExcusedThatIsNotThere()
    {
        for (const QString &text : noMessages)
            QVERIFY2(excused_.contains(text), qPrintable(text));
    }

private:
    void readGuide()
    {
        static const QRegularExpression row(
            QStringLiteral("^\\| `([^`]+)` \\| ([^|]*) \\|([^|]*)\\|$"));
        const QString guide = contentOf(QStringLiteral(SOURCE_FOLDER "/docs/user-guide.md"));
        const QString messages = guide.section(QStringLiteral("\n## Messages\n"), 1);
        for (const QString &line : messages.split(QLatin1Char('\n'))) {
            const auto match = row.match(line);
            if (!match.hasMatch())
                continue;
            rows_.insert(match.captured(1));
            meanings_.insert(match.captured(1), match.captured(2));
            remedies_.insert(match.captured(1), match.captured(3));
        }
    }

    /// What stands in bold.
    static QSet<QString> namedIn(const QString &remedy)
    {
        static const QRegularExpression bold(QStringLiteral("\\*\\*([^*]+)\\*\\*"));
        QSet<QString> names;
        for (auto found = bold.globalMatch(remedy); found.hasNext();)
            names.insert(found.next().captured(1));
        return names;
    }

    void readForms()
    {
        static const QRegularExpression string(QStringLiteral("<string>([^<]+)</string>"));
        QDirIterator files(QStringLiteral(SOURCE_FOLDER "/app/forms"), {QStringLiteral("*.ui")});
        while (files.hasNext()) {
            const QString path = files.next();
            if (path.endsWith(QStringLiteral("/yes_no_dialog.ui")))
                continue; // whoever asks gives it its texts
            for (auto found = string.globalMatch(contentOf(path)); found.hasNext();)
                shown_.insert(found.next().captured(1));
        }
    }

    void readSources()
    {
        for (const char *room : {"app", "settingsfile", "readback", "layout", "mouse", "connection",
                                 "usr", "session", "device", "log"}) {
            QDirIterator files(QStringLiteral(SOURCE_FOLDER "/") + QLatin1String(room),
                               {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (files.hasNext())
                readSource(files.next());
        }
    }

    void readSource(const QString &path)
    {
        // Conversations and values without a window: their words are for the command line.
        static const QRegularExpression windowless(QStringLiteral(
            "/(session/(switch_session|module_session|module_search)|device/setting_values)[.]"));
        // The event log, a style sheet, an exception that is caught: nobody is shown these.
        static const QRegularExpression elsewhere(
            QStringLiteral("(writeLog|setStyleSheet|qDebug\\(\\)\\.noquote\\(\\) "
                           "<<|_error|invalid_argument)\\(?(QStringLiteral\\(|std::string\\()?$"));
        // What the device knows speaks in bytes to the switch and in QString to the user.
        static const QRegularExpression forTheUser(QStringLiteral("QStringLiteral\\($"));
        static const QRegularExpression question(
            QStringLiteral("Yes_No_Dialog \\w+\\(\\s*QStringLiteral\\(\"([^\"]+)\"\\),"
                           "\\s*QStringLiteral\\(\"([^\"]+)\"\\),"
                           "\\s*QStringLiteral\\(\"([^\"]+)\"\\)"));
        const bool knowsTheDevice = path.contains(QStringLiteral("/device/"));
        if (windowless.match(path).hasMatch())
            return;
        const QString source = contentOf(path);
        for (auto found = question.globalMatch(source); found.hasNext();) {
            const auto match = found.next();
            questions_.insert(match.captured(1), {match.captured(2), match.captured(3)});
        }
        for (const auto &[before, text] : literalsOf(source)) {
            texts_.insert(asInTheGuide(text));
            if (noMessages.contains(text))
                excused_.insert(text);
            else if (isSentence(text) && !text.contains(QLatin1Char('{')) &&
                     !text.contains(QStringLiteral("background-color")) &&
                     !elsewhere.match(before).hasMatch() &&
                     (!knowsTheDevice || forTheUser.match(before).hasMatch()))
                messages_.insert(asInTheGuide(text));
        }
    }

    QSet<QString> rows_; ///< the messages of the guide
    QHash<QString, QString> meanings_;
    QHash<QString, QString> remedies_;
    QHash<QString, QSet<QString>> questions_; ///< in the sources, with the texts of their buttons
    QSet<QString> shown_;                     ///< texts of the forms
    QSet<QString> messages_;                  ///< what in the sources reads like a message
    QSet<QString> texts_;                     ///< all texts of the sources
    QSet<QString> excused_;                   ///< those of `noMessages` that are there
};

QTEST_APPLESS_MAIN(UserGuideTest)
#include "tst_user_guide.moc"
