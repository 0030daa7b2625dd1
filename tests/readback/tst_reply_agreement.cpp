#include "device/configuration_reply.h"
#include "device/reply.h"
#include "device/reply_words.h"
#include "layout/grid_bench.h"
#include "layout/layout_submission.h"
#include "mouse/mouse_settings.h"
#include "readback/reply_application.h"
#include "readback/reply_table.h"
#include "support/link_bench.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QTest>

namespace {
using Values = QMap<QString, QString>; // by the settings' names; none for what is not told

/// "key=value|key=value", "?" for what is not told.
void change(Values &values, const QString &changes)
{
    for (const QString &entry : changes.split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
        const QString key = entry.section(QLatin1Char('='), 0, 0);
        const QString value = entry.section(QLatin1Char('='), 1);
        if (!settingOfName(key))
            qFatal("no setting is called %s", qPrintable(key));
        if (value == QStringLiteral("?"))
            values.remove(key);
        else
            values[key] = value;
    }
}

Values valuesOf(const char *text)
{
    Values values;
    change(values, QString::fromUtf8(text));
    return values;
}

/// What the example answer says.
Values example()
{
    return valuesOf("km-control=2|usb-control=3|active-ports=3|cursor-rolling=on|buzzer=on|"
                    "mouse-mode=relative|resolution.1=1080p|resolution.2=OFFICE|resolution.3=2K|"
                    "resolution.4=LAB|custom.1=100 250 OFFICE|custom.2=120 80 DESK|"
                    "custom.3=1 500 HOME|custom.4=300 300 LAB|layout=..../12../.3../.4..|"
                    "hotkey=Scroll Lock");
}

/// What the window shows before it reads anything.
Values before()
{
    return valuesOf("km-control=4|usb-control=4|active-ports=2|cursor-rolling=on|buzzer=on|"
                    "mouse-mode=relative|resolution.1=5760x1080|resolution.2=5760x1080|"
                    "resolution.3=5760x1080|resolution.4=5760x1080|custom.1=|custom.2=|custom.3=|"
                    "custom.4=|layout=1234/..../..../....|hotkey=");
}

/// The controls that a reply fills, and the window's road from a reply to them.
class Window : public QObject
{
    Q_OBJECT

public:
    Window()
    {
        for (QComboBox *combo : {&km_, &usb_})
            combo->addItems({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                             QStringLiteral("4")});
        ports_.addItems({QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")});
        rolling_.addItems({QStringLiteral("off"), QStringLiteral("on")});
        mode_.addItems({QStringLiteral("absolute"), QStringLiteral("relative")});
        setting_.addItems({QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C3"),
                           QStringLiteral("C4")});
        for (QComboBox &combo : resolutions_) {
            combo.addItems(presetNames());
            combo.setCurrentIndex(4);
        }
        km_.setCurrentIndex(3);
        usb_.setCurrentIndex(3);
        rolling_.setCurrentIndex(1);
        mode_.setCurrentIndex(1);
        bench_.controls.setBeepButtonsEnabled(false, true);
    }

    /// Reads `reply` as it is read when it arrives on the serial line in one piece.
    void read(const std::string &reply)
    {
        replies_.applyFrontPanel(reply);
        replies_.applyKmControl(reply);
        replies_.applyUsbControl(reply);
        try {
            replies_.applyStatus(reply);
            replies_.applyConfiguration(reply);
            layout_.load(replyValue(reply, layoutReplyKey));
        } catch (const std::exception &) {
            return; // it would be read again; what is shown by now stays
        }
    }

    Values shown() const
    {
        Values values;
        values[QStringLiteral("km-control")] = km_.currentText();
        values[QStringLiteral("usb-control")] = usb_.currentText();
        values[QStringLiteral("active-ports")] = ports_.currentText();
        values[QStringLiteral("cursor-rolling")] = rolling_.currentText();
        values[QStringLiteral("mouse-mode")] = mode_.currentText();
        values[QStringLiteral("buzzer")] =
            bench_.controls.isBeepOnEnabled() ? QStringLiteral("off") : QStringLiteral("on");
        for (int at = 0; at < 4; ++at) {
            const QString number = QString::number(at + 1);
            values[QStringLiteral("resolution.") + number] = resolutions_[at].currentText();
            values[QStringLiteral("custom.") + number] = numbersOf(labels_[at].text());
        }
        values[QStringLiteral("layout")] = grid_.picture().remove(QLatin1Char('-'));
        values[QStringLiteral("hotkey")] = hotkey_.text();
        return values;
    }

public Q_SLOTS:
    void refresh_UI() {}

private:
    /// A label's text with its numbers as numbers, where they are some.
    static QString numbersOf(const QString &label)
    {
        bool hasX = false;
        bool hasY = false;
        const int x = label.mid(0, 3).trimmed().toInt(&hasX);
        const int y = label.mid(4, 3).trimmed().toInt(&hasY);
        const QString name = label.mid(8).remove(QLatin1Char(' '));
        return hasX && hasY && !name.isEmpty() ? QStringLiteral("%1 %2 %3").arg(x).arg(y).arg(name)
                                               : label;
    }

    mutable LinkBench bench_;
    QLabel hotkey_;
    QComboBox km_;
    QComboBox usb_;
    QComboBox ports_;
    QComboBox rolling_;
    QComboBox mode_;
    QComboBox resolutions_[4];
    QLabel labels_[4];
    QComboBox setting_;
    QLineEdit name_;
    QLineEdit x_;
    QLineEdit y_;
    GridBench grid_;
    MouseSettings mouse_{*this,
                         {{&resolutions_[0], &resolutions_[1], &resolutions_[2], &resolutions_[3]},
                          {&labels_[0], &labels_[1], &labels_[2], &labels_[3]},
                          &setting_,
                          &name_,
                          &x_,
                          &y_},
                         bench_.link,
                         bench_.controls,
                         {}};
    ReplyApplication replies_{
        {&hotkey_, &km_, &usb_, &ports_, &rolling_, &mode_}, bench_.controls, mouse_, grid_.grid};
    LayoutSubmission layout_{grid_.grid, bench_.link, ports_};
};
} // namespace

/// One table of replies, read by the window and by the core: they agree, but for the places that
/// the table lists as the window's own.
class ReplyAgreementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWindowStartsElsewhere() { QCOMPARE(Window().shown(), before()); }

    void theCoreReadsTheTable_data() { rows(); }
    void theCoreReadsTheTable()
    {
        QFETCH(int, row);
        const ReplyRow reply = replyTable().at(row);
        const ConfigurationReading reading = readConfiguration(reply.reply().toStdString());
        Values expected = example();
        change(expected, reply.core);
        Values read;
        QStringList untold;
        for (const SettingKey key : allSettingKeys()) {
            if (const auto text = settingText(reading.configuration, key))
                read[settingName(key)] = *text;
            else
                untold.append(settingName(key));
        }
        QCOMPARE(read, expected);
        QStringList problems;
        for (const ReplyProblem &problem : reading.problems)
            problems.append(settingName(problem.key));
        QCOMPARE(problems, untold);
    }

    void theWindowAgrees_data() { rows(); }
    void theWindowAgrees()
    {
        QFETCH(int, row);
        const ReplyRow reply = replyTable().at(row);
        Window window;
        window.read(reply.reply().toStdString());
        Values told = example();
        change(told, reply.core);
        Values expected = before();
        expected.insert(told);
        change(expected, reply.window);
        QCOMPARE(window.shown(), expected);
    }

private:
    static void rows()
    {
        QTest::addColumn<int>("row");
        const QList<ReplyRow> table = replyTable();
        for (qsizetype at = 0; at < table.size(); ++at)
            QTest::newRow(table[at].title) << static_cast<int>(at);
    }
};

QTEST_MAIN(ReplyAgreementTest)
#include "tst_reply_agreement.moc"
