#include "recordings.h"
#include "support/network_window.h"
#include "support/serial_window.h"

#include <QQueue>
#include <QSocketNotifier>
#include <QTableWidget>
#include <QTimer>

using namespace std::chrono_literals;

namespace {
/// A recorded switch at the other end of a cable, one recorded piece a turn of the event loop.
class CableSwitch : public QObject
{
public:
    CableSwitch(PtyPair &cable, const RecordedSwitch &device)
        : cable_(cable), device_(device), notifier_(cable.masterDescriptor(), QSocketNotifier::Read)
    {
        connect(&notifier_, &QSocketNotifier::activated, this, [this] {
            for (const Piece &piece : device_.receive(cable_.read()))
                pieces_.append(piece.bytes);
            turn_.start(0);
        });
        connect(&turn_, &QTimer::timeout, this, [this] {
            if (pieces_.isEmpty())
                turn_.stop();
            else
                cable_.write(pieces_.dequeue());
        });
    }

private:
    PtyPair &cable_;
    RecordedSwitch device_;
    QSocketNotifier notifier_;
    QTimer turn_;
    QQueue<QByteArray> pieces_;
};

QString layoutOf(const QTableWidget &grid)
{
    QStringList rows;
    for (int row = 0; row < grid.rowCount(); ++row) {
        QString cells;
        for (int column = 0; column < grid.columnCount(); ++column) {
            const QTableWidgetItem *const item = grid.item(row, column);
            const QString text = item == nullptr ? QString() : item->text();
            cells += text.startsWith(QStringLiteral("Channel ")) ? text.at(8) : QLatin1Char('.');
        }
        rows.append(cells);
    }
    return rows.join(QLatin1Char('/'));
}

/// "120 080 DESK" as "120 80 DESK".
QString numbersOf(const QString &label)
{
    const int x = label.mid(0, 3).trimmed().toInt();
    const int y = label.mid(4, 3).trimmed().toInt();
    return QStringLiteral("%1 %2 %3").arg(x).arg(y).arg(label.mid(8).remove(QLatin1Char(' ')));
}

/// What the window shows, by the settings' names.
QMap<QString, QString> shown(const WindowBench &bench)
{
    QMap<QString, QString> values;
    const auto number = [&bench](const char *combo, int first) {
        return QString::number(bench.combo(combo)->currentIndex() + first);
    };
    const auto word = [&bench](const char *combo, const char *zero, const char *one) {
        return QString::fromLatin1(bench.combo(combo)->currentIndex() == 0 ? zero : one);
    };
    values[QStringLiteral("km-control")] = number("comboBox_KM_Control", 1);
    values[QStringLiteral("usb-control")] = number("comboBox_USB_Control", 1);
    values[QStringLiteral("active-ports")] = number("comboBox_Select_active_port", 2);
    values[QStringLiteral("cursor-rolling")] =
        word("comboBox_Enable_or_Disable_Cursor_Roll", "off", "on");
    values[QStringLiteral("mouse-mode")] =
        word("comboBox_Select_Display_Mode", "absolute", "relative");
    values[QStringLiteral("buzzer")] = bench.button("pushButton_ON_Beep")->isEnabled()
                                           ? QStringLiteral("off")
                                           : QStringLiteral("on");
    for (int i = 1; i <= 4; ++i) {
        const QByteArray at = QByteArray::number(i);
        values[QStringLiteral("resolution.") + QString::fromLatin1(at)] =
            bench.combo("comboBox_mouse_movement_resolution_setting_" + at)->currentText();
        values[QStringLiteral("custom.") + QString::fromLatin1(at)] =
            numbersOf(bench.label("label_Custom_" + at)->text());
    }
    values[QStringLiteral("layout")] = layoutOf(*bench.find<QTableWidget>("tableWidget"));
    values[QStringLiteral("hotkey")] = bench.label("label_Current_Hotkey_Trigger_Data")->text();
    return values;
}
} // namespace

/// What the window shows of the switches that were recorded.
class RecordingsWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatTheSidecarSaysIsShown_data() { recordingRows(); }
    void whatTheSidecarSaysIsShown()
    {
        QFETCH(QString, name);
        RecordedCase theCase(name);
        QCOMPARE(theCase.expectation.mistake, QString());
        if (theCase.recording.serial) {
            SerialWindow s;
            s.device.reset();
            const CableSwitch device(*s.cable, theCase.device);
            WindowSettings settings = SerialWindow::quick();
            // The whole answer has come by then, on a slow machine too.
            settings.readBack.takeOver = 300ms + 10ms * theCase.recording.pieces.size();
            settings.networkLink.noAnswer = 200ms;
            s.start(settings);
            compare(s, theCase.expectation);
        } else {
            NetworkWindow s;
            s.answers.clear();
            for (const Piece &piece : theCase.device.receive("//rl\r//??\r//BP\r"))
                s.answers.append(piece.bytes);
            WindowSettings settings = s.settings();
            settings.networkLink.noAnswer = 200ms;
            s.WindowBench::start(settings);
            compare(s, theCase.expectation);
        }
    }

private:
    static void compare(WindowBench &bench, const Expectation &expectation)
    {
        if (!expectation.error.isEmpty()) {
            QTRY_VERIFY(bench.button("pushButton_Connection_Indicator")
                            ->toolTip()
                            .startsWith(QStringLiteral("No answer from the switch")));
            QVERIFY(!bench.isGreen());
            QCOMPARE(bench.label("label_Custom_1")->text(), QString());
            return;
        }
        QMap<QString, QString> expected = expectation.values;
        expected.insert(expectation.window);
        for (const QString &key : expectation.window.keys(QStringLiteral("?")))
            expected.remove(key);
        const auto shownOfThem = [&] {
            QMap<QString, QString> values = shown(bench);
            for (const QString &key : values.keys())
                if (!expected.contains(key))
                    values.remove(key);
            return values;
        };
        QTRY_COMPARE_WITH_TIMEOUT(shownOfThem(), expected, 30000);
        QVERIFY(bench.isGreen());
        QTRY_COMPARE(bench.user.texts(), expectation.notices);
    }
};

QTEST_MAIN(RecordingsWindowTest)
#include "tst_recordings_window.moc"
