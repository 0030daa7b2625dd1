#include "settings_scene.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <csignal>
#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace {
constexpr char initialText[] = "KM Control: //c1\n"
                               "USB Control: //u1\n"
                               "Limit Ports: //D4\n"
                               "Cursor Rolling: //o0\n"
                               "Resolution channel 1: //CE 1 1\n"
                               "Resolution channel 2: //CE 2 1\n"
                               "Resolution channel 3: //CE 3 1\n"
                               "Resolution channel 4: //CE 4 1\n"
                               "Custom mouse movement setting 1: \n"
                               "Custom mouse movement setting 2: \n"
                               "Custom mouse movement setting 3: \n"
                               "Custom mouse movement setting 4: \n"
                               "Data from mouse movement label 1: \n"
                               "Data from mouse movement label 2: \n"
                               "Data from mouse movement label 3: \n"
                               "Data from mouse movement label 4: \n"
                               "Grid settings: //FF01B01FF02B02FF03B03FF04B04\n"
                               "Coordinates channel 1: 0 0\n"
                               "Coordinates channel 2: 0 1\n"
                               "Coordinates channel 3: 0 2\n"
                               "Coordinates channel 4: 0 3\n"
                               "Buzzer: //B0\n"
                               "Mouse Mode: //ks\n";

constexpr char exampleText[] = "KM Control: //c3\n"
                               "USB Control: //u2\n"
                               "Limit Ports: //D4\n"
                               "Cursor Rolling: //o1\n"
                               "Resolution channel 1: //CE 1 3\n"
                               "Resolution channel 2: //CE 2 10\n"
                               "Resolution channel 3: //CE 3 1\n"
                               "Resolution channel 4: //CE 4 13\n"
                               "Custom mouse movement setting 1: //MM C1 100 250 OFFICE\n"
                               "Custom mouse movement setting 2: //MM C2 120 080 DESK\n"
                               "Custom mouse movement setting 3: //MM C3 001 500 HOME\n"
                               "Custom mouse movement setting 4: //MM C4 300 300 LAB\n"
                               "Data from mouse movement label 1: 100 250 OFFICE\n"
                               "Data from mouse movement label 2: 120 080 DESK\n"
                               "Data from mouse movement label 3: 001 500 HOME\n"
                               "Data from mouse movement label 4: 300 300 LAB\n"
                               "Grid settings: //FF01B05FF02B06FF03B10FF04B14\n"
                               "Coordinates channel 1: 1 0\n"
                               "Coordinates channel 2: 1 1\n"
                               "Coordinates channel 3: 2 1\n"
                               "Coordinates channel 4: 3 1\n"
                               "Buzzer: //B1\n"
                               "Mouse Mode: //km\n";

#ifdef Q_OS_UNIX
/// A full disk for this process: files may not grow beyond a number of bytes.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limited = before_;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit before_ = {};
    void (*signal_)(int);
};
#endif
} // namespace

/// Creating a settings file.
class SettingsSaveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init()
    {
        s_ = std::make_unique<SettingsScene>();
        s_->saveName = s_->path("saved.txt");
    }
    void cleanup() { s_.reset(); }

    void savingTheInitialLayout()
    {
        s_->file.create();
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray(initialText));
        QCOMPARE(s_->user.seen().size(), 1);
        QCOMPARE(s_->user.seen().first().text, QStringLiteral("File saved"));
        QCOMPARE(s_->user.seen().first().icon, QMessageBox::Information);
        QCOMPARE(s_->user.seen().first().title, QStringLiteral("Information"));
    }

    void savingWhatTheWindowShows()
    {
        s_->showExample();
        s_->file.create();
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray(exampleText));
        QVERIFY(s_->bench.isSilent());
    }

    void theExampleInTheUsersDocumentIsWhatIsSaved()
    {
        const QByteArray document =
            SettingsScene::contentsOf(QStringLiteral(PELORA_DOCS "/settings-file.md"));
        QVERIFY(document.contains("```\n" + QByteArray(exampleText) + "```\n"));
    }

    void inactiveChannelsAreSavedInTheirGreyEncoding()
    {
        s_->activePorts.setCurrentIndex(0);
        s_->table.grid.repaintActivePorts(0);
        s_->file.create();
        const QByteArray text = SettingsScene::contentsOf(s_->saveName);
        QVERIFY(text.contains("Limit Ports: //D2\n"));
        QVERIFY(text.contains("Grid settings: //FF01B01FF02B02FF03B03FF03B04\n"));
        QVERIFY(text.contains("Coordinates channel 4: 0 3\n"));
    }

    void aDisplayThatIsNotInTheLayoutHasNoCoordinates()
    {
        s_->table.grid.place({{{0, 0}, {0, 1}, {0, 2}, {0, -1}}}, 2);
        s_->file.create();
        QVERIFY(SettingsScene::contentsOf(s_->saveName).contains("Coordinates channel 4: 0 -1\n"));

        QTableWidget empty(4, 4);
        LayoutGrid grid(empty);
        LayoutSubmission layout(grid, s_->bench.link, s_->activePorts);
        SettingsFile file(
            s_->window,
            {&s_->kmControl, &s_->usbControl, &s_->activePorts, &s_->cursorRolling, &s_->mouseMode},
            {s_->handler, s_->bench.link, s_->bench.controls, s_->mouse, grid, layout},
            [] { return std::string("orca"); }, [] {}, {std::chrono::milliseconds(30)},
            {[this] { return s_->saveName; }, [] { return QString(); }});
        file.create();
        QVERIFY(SettingsScene::contentsOf(s_->saveName)
                    .contains("Grid settings: //\nCoordinates channel 1: \n"));
    }

    void aCancelledDialogWritesNothing()
    {
        s_->saveName.clear();
        s_->file.create();
        QVERIFY(s_->user.seen().isEmpty());
        QVERIFY(QDir(s_->folder.path()).isEmpty());
    }

    void anOldFileIsReplaced()
    {
        writeOldFile(QByteArray(5000, 'x'));
        s_->file.create();
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray(initialText));
    }

    void onlyForZenTheFileStaysUnfinishedUntilTheNextSave_data()
    {
        QTest::addColumn<QByteArray>("kmType");
        QTest::addColumn<bool>("finished");
        QTest::newRow("orca") << QByteArray("orca") << true;
        QTest::newRow("another") << QByteArray("manta") << true;
        QTest::newRow("Zen") << QByteArray("Zen") << true;
        QTest::newRow("zen") << QByteArray("zen") << false;
    }

    void onlyForZenTheFileStaysUnfinishedUntilTheNextSave()
    {
        QFETCH(QByteArray, kmType);
        QFETCH(bool, finished);
        writeOldFile("before");
        s_->kmType = kmType.toStdString();
        s_->file.create();
        QCOMPARE(s_->user.texts(), QStringList{QStringLiteral("File saved")});
        QCOMPARE(SettingsScene::contentsOf(s_->saveName),
                 finished ? QByteArray(initialText) : QByteArray("before"));

        const QString first = s_->saveName;
        s_->saveName = s_->path("second.txt");
        s_->file.create();
        QCOMPARE(SettingsScene::contentsOf(first), QByteArray(initialText));
        QCOMPARE(QFile::exists(s_->saveName), finished);
    }

    void anUnfinishedFileIsFinishedWithTheHandler()
    {
        SettingsFileHandler *handler = new SettingsFileHandler;
        QCOMPARE(handler->save(s_->saveName, "KM Control: //c1\n", true), QString());
        QVERIFY(!QFile::exists(s_->saveName));
        delete handler;
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray("KM Control: //c1\n"));
    }

    void anUnfinishedFileThatCannotBeFinishedIsReported()
    {
        s_->kmType = "zen";
        const QDir folder(s_->folder.path());
        QVERIFY(folder.mkdir(QStringLiteral("gone")));
        s_->saveName = s_->path("gone/first.txt");
        s_->file.create();
        QVERIFY(QDir(s_->path("gone")).removeRecursively());
        s_->saveName = s_->path("second.txt");
        s_->file.create();
        QCOMPARE(s_->user.seen().size(), 3);
        QCOMPARE(s_->user.seen().at(1).icon, QMessageBox::Warning);
        QVERIFY(s_->user.seen().at(1).text.startsWith(
            QStringLiteral("The last settings file could not be saved: ")));
        QCOMPARE(s_->user.seen().at(2).text, QStringLiteral("File saved"));
    }

    void aReadBackThatBeginsUnderTheDialogLeavesTheOldFile()
    {
        s_->showExample();
        writeOldFile("last week's");
        s_->whileSaving = [this] { s_->mouse.trimCustomEntries(); };
        s_->file.create();
        QCOMPARE(s_->user.seen().size(), 1);
        QCOMPARE(s_->user.seen().first().icon, QMessageBox::Warning);
        QCOMPARE(s_->user.seen().first().text,
                 QStringLiteral("The switch has not been read completely; nothing was saved. "
                                "Press Refresh."));
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray("last week's"));
    }

    void aReadBackThatEndsUnderTheDialogIsSaved()
    {
        s_->whileSaving = [this] {
            s_->mouse.trimCustomEntries();
            s_->showExample();
        };
        s_->file.create();
        QCOMPARE(s_->user.texts(), QStringList{QStringLiteral("File saved")});
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray(exampleText));
    }

    void aReadBackUnderADialogThatIsCancelledIsNotSpokenOf()
    {
        s_->saveName.clear();
        s_->whileSaving = [this] { s_->mouse.trimCustomEntries(); };
        s_->file.create();
        QVERIFY(s_->user.seen().isEmpty());
    }

    void aReadBackThatBeginsUnderANoticeChangesNothingThatIsSaved()
    {
        s_->showExample();
        s_->kmType = "zen";
        QVERIFY(QDir(s_->folder.path()).mkdir(QStringLiteral("gone")));
        s_->saveName = s_->path("gone/first.txt");
        s_->file.create();
        QVERIFY(QDir(s_->path("gone")).removeRecursively());
        s_->kmType = "orca";
        s_->saveName = s_->path("second.txt");
        s_->user.beforeButton([this](QMessageBox &box) {
            if (box.icon() == QMessageBox::Warning)
                s_->mouse.trimCustomEntries();
        });
        s_->file.create();
        QCOMPARE(s_->user.seen().size(), 3);
        QVERIFY(s_->user.seen().at(1).text.startsWith(
            QStringLiteral("The last settings file could not be saved: ")));
        QCOMPARE(s_->user.seen().at(2).text, QStringLiteral("File saved"));
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray(exampleText));
    }

    void aFolderThatDoesNotExist()
    {
        s_->saveName = s_->path("nowhere/saved.txt");
        s_->file.create();
        expectFailure();
        QVERIFY(!QFile::exists(s_->path("nowhere")));
    }

    void aFolderAsTarget()
    {
        s_->saveName = s_->folder.path();
        s_->file.create();
        expectFailure();
    }

#ifdef Q_OS_UNIX
    void aFullDiskLeavesTheOldFile()
    {
        writeOldFile("the old file");
        {
            const FileSizeLimit full(100);
            QCOMPARE(s_->handler.save(s_->saveName, initialText, false).isEmpty(), false);
        }
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray("the old file"));
        QCOMPARE(QDir(s_->folder.path()).entryList(QDir::Files),
                 QStringList{QStringLiteral("saved.txt")});
    }

    void aFullDiskIsShownAndLogged()
    {
        writeOldFile("the old file");
        // The event log must still take its line, so the limit lies behind where the log ends.
        const auto logSize = SettingsScene::log().size();
        s_->labels[0].setText(QString(logSize + 4000, QLatin1Char('x')));
        {
            const FileSizeLimit full(static_cast<rlim_t>(logSize + 2000));
            s_->file.create();
        }
        expectFailure();
        QCOMPARE(SettingsScene::contentsOf(s_->saveName), QByteArray("the old file"));

        s_->file.create(); // room again
        QVERIFY(s_->user.sawText(QStringLiteral("File saved")));
    }

    void aFullDiskWhileTheFileStaysOpenForZen()
    {
        s_->kmType = "zen";
        const auto logSize = SettingsScene::log().size();
        s_->labels[0].setText(QString(logSize + 4000, QLatin1Char('x')));
        const FileSizeLimit full(static_cast<rlim_t>(logSize + 2000));
        s_->file.create();
        expectFailure();
    }
#endif

    void theRealSaveDialog()
    {
        QString caption;
        QStringList filters;
        QString folder;
        s_->user.on<QFileDialog>([&](QFileDialog &dialog) {
            caption = dialog.windowTitle();
            filters = dialog.nameFilters();
            folder = dialog.directory().absolutePath();
            dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
                ->setText(s_->path("typed.txt"));
            dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
        });
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        const QString name = SettingsFile::Dialogs::real(s_->window).saveName();
        QCOMPARE(name, s_->path("typed.txt"));
        QCOMPARE(caption, QStringLiteral("Save Settings File"));
        QCOMPARE(filters, QStringList{QStringLiteral("Text files (*.txt)")});
        QCOMPARE(folder, QDir::homePath());
    }

    void theRealSaveDialogCancelled()
    {
        s_->user.on<QFileDialog>([](QFileDialog &dialog) { dialog.reject(); });
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QCOMPARE(SettingsFile::Dialogs::real(s_->window).saveName(), QString());
    }

private:
    void writeOldFile(const QByteArray &contents)
    {
        QFile old(s_->saveName);
        QVERIFY(old.open(QIODevice::WriteOnly));
        QCOMPARE(old.write(contents), contents.size());
    }

    void expectFailure()
    {
        QCOMPARE(s_->user.seen().size(), 1);
        QCOMPARE(s_->user.seen().first().icon, QMessageBox::Warning);
        const QString text = s_->user.seen().first().text;
        QVERIFY2(text.startsWith(QStringLiteral("The settings file could not be saved: ")),
                 qPrintable(text));
        QVERIFY(SettingsScene::log().contains(text.toUtf8() + "   "));
    }

    std::unique_ptr<SettingsScene> s_;
};

QTEST_MAIN(SettingsSaveTest)
#include "tst_settings_save.moc"
