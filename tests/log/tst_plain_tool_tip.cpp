#include "log/plain_tool_tip.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QToolTip>

/// Tool tips that look the same over every widget.
class PlainToolTipTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        button_ = std::make_unique<QPushButton>();
        button_->setStyleSheet(QStringLiteral("background-color: rgb(255, 0, 0);"));
        button_->installEventFilter(&plain_);
        button_->show();
    }

    void cleanup()
    {
        button_.reset();
        QToolTip::hideText();
        QTRY_VERIFY(tip() == nullptr);
    }

    void aTipDoesNotTakeOverItsWidgetsSheet()
    {
        button_->setToolTip(QStringLiteral("Disconnected"));
        hover();
        QTRY_VERIFY(tip() != nullptr);
        QCOMPARE(tip()->text(), QStringLiteral("Disconnected"));
        const QImage picture = tip()->grab().toImage();
        for (int x = 0; x < picture.width(); ++x)
            QVERIFY(picture.pixelColor(x, 1) != QColor(255, 0, 0));
        QCOMPARE(picture.pixelColor(2, 2), QToolTip::palette().color(QPalette::ToolTipBase));
    }

    void noSheetIsLeftFromTheTipBefore()
    {
        QPushButton other;
        other.setStyleSheet(QStringLiteral("background-color: rgb(255, 0, 0);"));
        other.setToolTip(QStringLiteral("another widget's"));
        other.show();
        hover(other); // the tip in sight is used again for the next one
        QTRY_VERIFY(tip() != nullptr);
        button_->setToolTip(QStringLiteral("Connected"));
        hover();
        QTRY_VERIFY(tip() != nullptr && tip()->text() == QStringLiteral("Connected"));
        QCOMPARE(tip()->grab().toImage().pixelColor(2, 2),
                 QToolTip::palette().color(QPalette::ToolTipBase));
    }

    void aTipOfADisabledWidgetIsShownToo()
    {
        button_->setToolTip(QStringLiteral("no port chosen"));
        button_->setEnabled(false);
        hover();
        QTRY_VERIFY(tip() != nullptr);
        QCOMPARE(tip()->text(), QStringLiteral("no port chosen"));
    }

    void markupStaysText()
    {
        button_->setToolTip(QStringLiteral("<b>COM3</b> could not be opened"));
        hover();
        QTRY_VERIFY(tip() != nullptr);
        QVERIFY2(tip()->text().contains(QStringLiteral("&lt;b&gt;COM3")),
                 qPrintable(tip()->text()));
    }

    void withoutATextThereIsNoTip()
    {
        hover();
        QVERIFY(tip() == nullptr);
    }

    void theWidgetDecidesHowLongItStays()
    {
        button_->setToolTip(QStringLiteral("Connected"));
        button_->setToolTipDuration(20);
        hover();
        QTRY_VERIFY(tip() != nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(tip() == nullptr, 3000); // ten seconds otherwise
    }

private:
    void hover() { hover(*button_); }

    static void hover(QWidget &widget)
    {
        const QPoint middle = widget.rect().center();
        QHelpEvent event(QEvent::ToolTip, middle, widget.mapToGlobal(middle));
        QApplication::sendEvent(&widget, &event);
    }

    /// The tool tip in sight, if any.
    static QLabel *tip()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->isVisible() && window->windowFlags().testFlag(Qt::ToolTip))
                return qobject_cast<QLabel *>(window);
        }
        return nullptr;
    }

    PlainToolTip plain_;
    std::unique_ptr<QPushButton> button_;
};

QTEST_MAIN(PlainToolTipTest)
#include "tst_plain_tool_tip.moc"
