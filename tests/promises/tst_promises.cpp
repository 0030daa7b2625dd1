#include "hostile.h"

#include "device/usr_frame.h"
#include "settingsfile/settings_file.h"
#include "support/network_window.h"
#include "support/serial_window.h"
#include "tests/cli/desk.h"

#include <QDirIterator>
#include <QHelpEvent>
#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <csignal>

namespace {
/// Looks at every label and message that is painted while it lives, and keeps the texts of those
/// that would show markup as something else than its letters.
class MarkupWatch : public QObject
{
public:
    MarkupWatch() { qApp->installEventFilter(this); }

    QStringList rendered;
    QStringList seen; ///< every text that was painted

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *label = event->type() == QEvent::Paint ? qobject_cast<QLabel *>(watched) : nullptr;
        if (!label || label->inherits("QTipLabel"))
            return false;
        seen.append(label->text());
        const bool isMarkup =
            label->textFormat() == Qt::RichText || label->textFormat() == Qt::MarkdownText ||
            (label->textFormat() == Qt::AutoText && Qt::mightBeRichText(label->text()));
        if (isMarkup)
            rendered.append(label->text());
        return false;
    }
};

QString text(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes);
}

/// What the tool tip of `widget` shows.
QString tipOf(QWidget &widget)
{
    QHelpEvent help(QEvent::ToolTip, QPoint(1, 1), widget.mapToGlobal(QPoint(1, 1)));
    QApplication::sendEvent(&widget, &help);
    const QString tip = QToolTip::text();
    return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

/// The lines of the event log that are none: neither a marker nor ended by a time.
QByteArrayList oddLines(const QByteArray &log)
{
    static const QRegularExpression shape(QStringLiteral(
        "^(Start\\.+|Stop\\.+|.+   [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2})$"));
    QByteArrayList lines = log.split('\n');
    lines.removeIf([](const QByteArray &line) {
        return line.isEmpty() || (isForEyesOnly(line) && shape.match(text(line)).hasMatch());
    });
    return lines;
}
/// A settings file in which the first custom setting is called `name`.
QByteArray fileWithName(const QByteArray &name)
{
    return "KM Control: //c4\nCustom mouse movement setting 1: //MM C1 100 250 " + name + '\n';
}

/// Whether `run` came to its own end and said something, or had nothing to complain of.
bool hasCome(const CtlRun &run)
{
    return run.status == 0 || (run.status > 0 && !run.errors.isEmpty());
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator each(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext())
        files.append(QDir(folder).relativeFilePath(each.next()));
    return files;
}
} // namespace

/// What no switch, module, list or file can do to the utility's user. Each test is one promise,
/// tried with each of the texts in hostile.h.
class PromisesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { folder_ = std::make_unique<QTemporaryDir>(); }

    // The window, its log, and what it sends.

    void noSwitchAndNoModuleIsShownAsMarkup_data() { markupRows(); }
    void noSwitchAndNoModuleIsShownAsMarkup()
    {
        QFETCH(QByteArray, markup);
        MarkupWatch watch;
        NetworkWindow n;
        n.module.answerSearches({{FakeModule::discoveryReply(
                                      QByteArray("\x7f\x00\x00\x01", 4),
                                      QByteArray("\x9c\xa5\x25\x00\x00\x02", 6), markup.left(16)),
                                  {}}});
        QByteArray reply = cannedReply;
        for (const char *word : {"DESK", "SLOW", "FAST", "Scroll Lock"})
            reply.replace(word, markup);
        n.answers = {reply + markup + '\n'};
        n.start();
        QVERIFY(n.waitForRead());
        n.button("pushButton_Mouse_Speed_Settings")->click();
        QTRY_VERIFY(watch.seen.contains(text("120 080 " + markup)));
        QCOMPARE(n.label("label_name_of_USR")->text(), text("  Name: " + markup.left(16)));
        QTRY_VERIFY(n.terminal().contains(text(markup)));
        n.button("ConfigurationBtn")->click();
        QTRY_VERIFY(watch.seen.contains(text(markup)));
        QCOMPARE(watch.rendered, QStringList());
    }

    void noFileIsShownAsMarkup_data() { markupRows(); }
    void noFileIsShownAsMarkup()
    {
        QFETCH(QByteArray, markup);
        MarkupWatch watch;
        SerialWindow s;
        const QString file = write(QByteArray(markup).replace('/', ' ') + ".txt", "nothing");
        s.start(SerialWindow::quick(),
                SettingsFile::Dialogs{[] { return QString(); }, [file] { return file; }});
        QVERIFY(s.waitForRead());
        s.button("pushButton_Load_Settings_File")->click();
        QTRY_VERIFY(!s.user.seen().isEmpty());
        QVERIFY(s.user.texts().join(QLatin1Char('\n')).contains(QFileInfo(file).fileName()));
        QVERIFY(watch.seen.join(QLatin1Char('\n')).contains(QFileInfo(file).fileName()));
        QCOMPARE(watch.rendered, QStringList());
    }

    void noPortIsShownAsMarkup_data() { markupRows(); }
    void noPortIsShownAsMarkup()
    {
        QFETCH(QByteArray, markup);
        MarkupWatch watch;
        SerialWindow s;
        QVERIFY(s.startAndRead());
        QComboBox *ports = s.combo("comboBox_SelectPort");
        ports->addItem(QStringLiteral("/dev/no_such_") + text(markup));
        ports->setCurrentIndex(ports->count() - 1);
        QPushButton *on = s.button("pushButton_ON_Connection");
        QTRY_VERIFY(on->toolTip().contains(text(markup)));
        QVERIFY(tipOf(*on).contains(text(markup)));
        QCOMPARE(watch.rendered, QStringList());
    }

    void nothingWritesASecondLineIntoTheLog_data() { controlRows(); }
    void nothingWritesASecondLineIntoTheLog()
    {
        QFETCH(QByteArray, control);
        const QByteArray fake = control + "\nStop.........\n" + control;
        {
            SerialWindow s;
            const QString file =
                write("a.txt", "KM Control: //c" + control + "x\nBuzzer: //B" + control +
                                   "\nGrid settings: //F" + control + '\n');
            s.start(SerialWindow::quick(),
                    SettingsFile::Dialogs{[] { return QString(); }, [file] { return file; }});
            QVERIFY(s.waitForRead());
            s.button("pushButton_Load_Settings_File")->click();
            QTRY_VERIFY(s.log().contains("The settings file"));
            QComboBox *ports = s.combo("comboBox_SelectPort");
            ports->addItem(QStringLiteral("/dev/no_such_") + text(fake));
            ports->setCurrentIndex(ports->count() - 1);
            QTRY_VERIFY(s.log().contains("no_such_"));
            writeLog((QByteArray("name ") + fake).toStdString());
        }
        const QByteArray log = WindowBench::log();
        QCOMPARE(oddLines(log), QByteArrayList());
        QCOMPARE(log.count("\nStop.........\n"), 1);
    }

    void noTypedNameBecomesASecondCommand_data() { controlRows(); }
    void noTypedNameBecomesASecondCommand()
    {
        QFETCH(QByteArray, control);
        SerialWindow s;
        QVERIFY(s.startAndRead());
        s.device->forget();
        s.find<QLineEdit>("lineEdit_Mouse_Movement_Name")->setText(text("A" + control + "//F"));
        s.find<QLineEdit>("lineEdit_Mouse_Movement_X")->setText(QStringLiteral("1"));
        s.find<QLineEdit>("lineEdit_Mouse_Movement_Y")->setText(QStringLiteral("2"));
        s.button("pushButton_Submit_Custom_Mouse_Movement_Settings")->click();
        QTRY_VERIFY(!s.device->commands().isEmpty());
        const QByteArray sent = s.device->commands().constFirst();
        QVERIFY(sent.startsWith("//MM C1 1 2 A") && sent.endsWith("//F "));
        QVERIFY(areSingleCommands({sent + '\r'}));
        QVERIFY(!s.device->commands().contains("//F"));
    }

    void noFileBecomesASecondCommand_data() { controlRows(); }
    void noFileBecomesASecondCommand()
    {
        QFETCH(QByteArray, control);
        SerialWindow s;
        const QString file =
            write("a.txt", "KM Control: //c4" + control +
                               "//F\nCustom mouse movement setting 1: //MM C1 1 2 "
                               "A" +
                               control +
                               "\r//F\nUSB Control: //u4\nBuzzer: //B1\r//F\nMouse Mode: //km\n");
        s.start(SerialWindow::quick(),
                SettingsFile::Dialogs{[] { return QString(); }, [file] { return file; }});
        QVERIFY(s.waitForRead());
        s.device->forget();
        s.button("pushButton_Load_Settings_File")->click();
        QTRY_VERIFY(s.device->commands().contains("//km")); // the file's last line
        QVERIFY(s.device->commands().contains("//u4"));
        QVERIFY(!s.device->commands().contains("//F"));
        QByteArrayList frames;
        for (const QByteArray &command : s.device->commands())
            frames.append(command + '\r');
        QVERIFY(areSingleCommands(frames));
    }

    void noTextOfAModuleMakesItsFramesLonger_data() { controlRows(); }
    void noTextOfAModuleMakesItsFramesLonger()
    {
        QFETCH(QByteArray, control);
        const QString name = text(control.left(6));
        QCOMPARE(usr_frame::toBytes(usr_frame::loginRequest(QStringLiteral("9ca525000002"), name,
                                                            QStringLiteral("admin")))
                     .size(),
                 22);
    }

    // The command line, and the files that it writes.

    void noSwitchSendsAnEscapeSequenceToTheTerminal_data() { controlRows(); }
    void noSwitchSendsAnEscapeSequenceToTheTerminal()
    {
        QFETCH(QByteArray, control);
        Desk desk;
        desk.replace("//??\r", "Scroll Lock", "Scr" + control + "Lock");
        desk.replace("//rl\r", "OFFICE", "OFF" + control + "ICE");
        const QString file = write("wanted.txt", fileWithName("DESK"));
        for (const QString &command :
             {QStringLiteral("get"), QStringLiteral("--json get"), QStringLiteral("get hotkey"),
              QStringLiteral("diff ") + file, QStringLiteral("--json diff ") + file,
              QStringLiteral("apply --dry-run ") + file,
              QStringLiteral("save ") + folder_->filePath(QStringLiteral("saved.txt"))}) {
            const CtlRun run = ctl(desk.option() + command);
            QVERIFY2(hasCome(run), qPrintable(command));
            QVERIFY2(isForEyesOnly(run.output), qPrintable(command));
            QVERIFY2(isForEyesOnly(run.errors), qPrintable(command));
        }
        const QByteArray shown = ctl(desk.option() + QStringLiteral("get")).output;
        QVERIFY2(shown.contains("Lock"), shown.constData()); // with what came before it
    }

    void noNewsFromASwitchDoesEither_data() { controlRows(); }
    void noNewsFromASwitchDoesEither()
    {
        QFETCH(QByteArray, control);
        Desk desk;
        CtlProcess watching;
        watching.start(desk.option().split(QLatin1Char(' '), Qt::SkipEmptyParts) +
                       QStringList{QStringLiteral("watch")});
        QVERIFY(watching.hasSaid("usb-control 3\n"));
        desk.say(control + "noise" + control + "\n**C4\nCurrent USB Control: 2" + control + "\n");
        QVERIFY(watching.hasSaid("km-control 4\n"));
        ::kill(static_cast<pid_t>(watching.process.processId()), SIGINT);
        const CtlRun run = watching.wait();
        QVERIFY(hasCome(run));
        QVERIFY(isForEyesOnly(run.output));
        QVERIFY(isForEyesOnly(run.errors));
    }

    void noListAndNoFileDoesEither_data() { controlRows(); }
    void noListAndNoFileDoesEither()
    {
        QFETCH(QByteArray, control);
        const Desk desk;
        const QByteArray port = QByteArray::number(desk.port());
        const QString list = write("list.txt", "desk" + control + "1 udp:127.0.0.1:" + port +
                                                   "\nb" + control + " tcp:x\n");
        const QString good = write("good.txt", "desk" + control + "1 udp:127.0.0.1:" + port + '\n');
        const QString file =
            write("file.txt", fileWithName(control + "A B") + "Buzzer: " + control);
        const QString odd = write("odd" + control + ".txt", "nothing");
        for (const QStringList &words :
             {QStringList{QStringLiteral("-D"), list, QStringLiteral("get")},
              QStringList{QStringLiteral("-D"), good, QStringLiteral("get")},
              QStringList{QStringLiteral("--json"), QStringLiteral("-D"), good,
                          QStringLiteral("get")},
              QStringList{QStringLiteral("-D"), good, QStringLiteral("apply"), file},
              QStringList{QStringLiteral("-D"), good, QStringLiteral("diff"), odd},
              QStringList{QStringLiteral("-D"), odd, QStringLiteral("get")}}) {
            const CtlRun run = ctl(QString(), words);
            QVERIFY2(hasCome(run), qPrintable(words.join(QLatin1Char(' '))));
            QVERIFY2(isForEyesOnly(run.output), run.output.toHex().constData());
            QVERIFY2(isForEyesOnly(run.errors), run.errors.toHex().constData());
        }
    }

    void noNameBecomesASecondCommand_data() { controlRows(); }
    void noNameBecomesASecondCommand()
    {
        QFETCH(QByteArray, control);
        Desk desk;
        desk.replace("//rl\r", "OFFICE", "OFF" + control + "ICE");
        const QString name = QString::fromUtf8("A" + control + "//F");
        ctl(desk.option() + QStringLiteral("set"), {QStringLiteral("custom.1=1 2 ") + name});
        ctl(desk.option() + QStringLiteral("set"), {QStringLiteral("km-control=1") + name});
        ctl(desk.option() + QStringLiteral("apply"),
            {write("file.txt", fileWithName("A" + control + "//F"))});
        ctl(desk.option() + QStringLiteral("apply"),
            {write("file.txt", "KM Control: //c4" + control + "//F\nBuzzer: //B0\n")});
        ctl(desk.option() + QStringLiteral("set km-control=1"));
        QVERIFY(desk.commands().contains("//c1\r")); // it does send
        QVERIFY(areSingleCommands(desk.commands()));
        QVERIFY(!desk.commands().contains("//F\r"));
    }

    void noNameLeadsOutOfTheFolder_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name :
             {"..", ".", "../x", "../../x", "/x", "a/../../x", "..\\x", "C:x", "C:\\x", "con",
              "NUL.", "x\x1b", "x\x7f", "x*", "x?", "x|y", "<b>x</b>"})
            QTest::newRow(name) << QByteArray(name);
    }
    void noNameLeadsOutOfTheFolder()
    {
        QFETCH(QByteArray, name);
        const Desk desk;
        QVERIFY(QDir(folder_->path()).mkpath(QStringLiteral("deep/backup")));
        const QString list =
            write("list.txt", name + " udp:127.0.0.1:" + QByteArray::number(desk.port()) + '\n');
        const QStringList before = filesBelow(folder_->path());
        const CtlRun run =
            ctl(QString(), {QStringLiteral("-D"), list, QStringLiteral("save"),
                            folder_->filePath(QStringLiteral("deep/backup/{name}"))});
        QCOMPARE(run.status, 2);
        QCOMPARE(filesBelow(folder_->path()), before);
        QVERIFY(desk.commands().isEmpty()); // nobody was asked for what cannot be kept
    }

    void aNameThatIsOneStaysInTheFolder()
    {
        const Desk desk;
        QVERIFY(QDir(folder_->path()).mkpath(QStringLiteral("backup")));
        const QString list = write(
            "list.txt", "B\xC3\xBCro..1 udp:127.0.0.1:" + QByteArray::number(desk.port()) + '\n');
        const CtlRun run = ctl(QString(), {QStringLiteral("-D"), list, QStringLiteral("save"),
                                           folder_->filePath(QStringLiteral("backup/{name}"))});
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(filesBelow(folder_->path()).contains(QString::fromUtf8("backup/B\xC3\xBCro..1")));
    }

    void whateverASwitchIsCalledItsBackupCanBeApplied_data() { controlRows(); }
    void whateverASwitchIsCalledItsBackupCanBeApplied()
    {
        QFETCH(QByteArray, control);
        Desk desk;
        desk.replace("//rl\r", "OFFICE", "OFF" + control + "ICE");
        const QString file = folder_->filePath(QStringLiteral("saved.txt"));
        QCOMPARE(ctl(desk.option() + QStringLiteral("save"), {file}).status, 0);
        const CtlRun run = ctl(desk.option() + QStringLiteral("apply"), {file});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, QByteArray("already so\n"));
    }

private:
    QString write(const QByteArray &name, const QByteArray &contents) const
    {
        const QString path = folder_->filePath(QString::fromUtf8(name));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            qFatal("%s cannot be written", name.constData());
        return path;
    }

    std::unique_ptr<QTemporaryDir> folder_;
};

QTEST_MAIN(PromisesTest)
#include "tst_promises.moc"
