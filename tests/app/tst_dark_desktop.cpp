#include "form_window.h"

#include "connection/select_connection_method_dialog.h"
#include "connection/select_km_type_dialog.h"
#include "log/notices.h"
#include "log/window_dress.h"
#include "readback/yes_no_dialog.h"
#include "tests/usr/fake_module.h"
#include "usr/change_setting_for_usr_dialog.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QToolTip>
#include <cmath>

namespace {
constexpr QColor desktopsDark(40, 40, 40);
constexpr double legible = 4.5;
constexpr double legibleWhenLarge = 3.0; ///< for bold text of 14 points and more

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QPalette darkPalette()
{
    QPalette dark;
    for (int role = 0; role < QPalette::NColorRoles; ++role)
        dark.setColor(QPalette::All, QPalette::ColorRole(role), desktopsDark);
    for (const auto text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::ToolTipText, QPalette::BrightText})
        dark.setColor(QPalette::All, text, Qt::white);
    return dark;
}

/// The best contrast of any pixel to the commonest one where `widget` shows its text.
double shownContrast(const QWidget &widget)
{
    QRect text = widget.rect();
    if (qobject_cast<const QRadioButton *>(&widget) != nullptr)
        text.setLeft(24); // its circle is no text
    else if (qobject_cast<const QLabel *>(&widget) == nullptr)
        text.adjust(6, 6, -6, -6); // nor is a frame
    QWidget *window = widget.window();
    const QImage picture =
        window->grab(QRect(widget.mapTo(window, text.topLeft()), text.size())).toImage();
    QHash<QRgb, int> pixels;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++pixels[picture.pixel(x, y)];
    }
    QRgb ground = picture.pixel(0, 0);
    for (auto pixel = pixels.cbegin(); pixel != pixels.cend(); ++pixel) {
        if (pixel.value() > pixels.value(ground))
            ground = pixel.key();
    }
    double best = 1;
    for (auto pixel = pixels.cbegin(); pixel != pixels.cend(); ++pixel)
        best = std::max(best, contrast(QColor(pixel.key()), QColor(ground)));
    return best;
}

bool isLarge(const QFont &font)
{
    return font.bold() && QFontInfo(font).pointSizeF() >= 14;
}

/// Shows `window` and looks at each of its texts.
void expectLegible(QWidget &window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    int texts = 0;
    const auto widgets = window.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        auto *edit = qobject_cast<QLineEdit *>(widget);
        if (edit != nullptr && edit->text().isEmpty())
            edit->setText(QStringLiteral("text"));
        const auto *label = qobject_cast<QLabel *>(widget);
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        const bool hasText = edit != nullptr || (label != nullptr && !label->text().isEmpty()) ||
                             (button != nullptr && !button->text().isEmpty());
        // The hint's blue on grey belongs to the form's look, on every desktop.
        if (!hasText || !widget->isVisible() || widget->objectName() == QLatin1String("label_29"))
            continue;
        ++texts;
        const double seen = shownContrast(*widget);
        const double least = isLarge(widget->font()) ? legibleWhenLarge : legible;
        QVERIFY2(seen >= least, qPrintable(QStringLiteral("%1 of %2: %3")
                                               .arg(widget->objectName(),
                                                    QLatin1String(window.metaObject()->className()))
                                               .arg(seen)));
    }
    QVERIFY(texts > 0);
    window.hide();
}
} // namespace

/// The program on a desktop whose colours are dark.
class DarkDesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setPalette(darkPalette());
        QApplication::setPalette(darkPalette(), "QLabel"); // desktops have colours per class too
        QToolTip::setPalette(darkPalette());
        useLightPalette();
    }

    void everyPairOfRolesIsLegible()
    {
        using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto &[text, ground] :
                 {Pair(QPalette::WindowText, QPalette::Window),
                  Pair(QPalette::Text, QPalette::Base),
                  Pair(QPalette::Text, QPalette::AlternateBase),
                  Pair(QPalette::ButtonText, QPalette::Button),
                  Pair(QPalette::HighlightedText, QPalette::Highlight),
                  Pair(QPalette::ToolTipText, QPalette::ToolTipBase),
                  Pair(QPalette::PlaceholderText, QPalette::Base),
                  Pair(QPalette::Link, QPalette::Base), Pair(QPalette::LinkVisited, QPalette::Base),
                  Pair(QPalette::Link, QPalette::Window),
                  Pair(QPalette::LinkVisited, QPalette::Window)}) {
                const QPalette palette = QApplication::palette();
                const double seen =
                    contrast(palette.color(group, text), palette.color(group, ground));
                QVERIFY2(seen >= legible,
                         qPrintable(QStringLiteral("roles %1 on %2 in group %3: %4")
                                        .arg(text)
                                        .arg(ground)
                                        .arg(group)
                                        .arg(seen)));
                QVERIFY(palette.color(group, ground).lightnessF() > 0.35);
            }
        }
    }

    void noColourOfTheDesktopIsLeft()
    {
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (int role = 0; role < QPalette::NColorRoles; ++role) {
                if (role != QPalette::NoRole)
                    QVERIFY2(QApplication::palette().color(group, QPalette::ColorRole(role)) !=
                                 desktopsDark,
                             qPrintable(QString::number(role)));
            }
        }
    }

    void toolTipsAreDarkOnLight()
    {
        const QPalette tip = QToolTip::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            QVERIFY(contrast(tip.color(group, QPalette::ToolTipText),
                             tip.color(group, QPalette::ToolTipBase)) >= legible);
        QVERIFY(tip.color(QPalette::Inactive, QPalette::ToolTipBase).lightnessF() > 0.8);
    }

    void theMainWindow()
    {
        FormWindow window;
        for (int page = 0; page < 3; ++page) {
            window.showPage(page);
            expectLegible(window.window);
        }
    }

    void theWizardsDialogs()
    {
        Select_connection_method_Dialog method;
        expectLegible(method);
        Select_KM_type_Dialog type;
        expectLegible(type);
    }

    void theModulesDialogs()
    {
        FakeModule module;
        module.answerSearches(
            {{FakeModule::discoveryReply(QByteArray("\xc0\xa8\x01\x07", 4),
                                         QByteArray("\x9c\xa5\x25\x1a\x2b\x3c", 6), "Desk")}});
        module.answerLogins({{FakeModule::configuration('\x80')}});
        const UsrNetwork network =
            module.network(std::chrono::milliseconds(50), std::chrono::milliseconds(5));
        const QString ip = QStringLiteral("192.168.1.7");
        const QString admin = QStringLiteral("admin");
        Credentials_Dialog login(nullptr, ip, network);
        expectLegible(login);
        Change_setting_for_USR_Dialog settings(nullptr, ip, ip, ip, ip, QStringLiteral("80"), admin,
                                               admin, admin, network);
        expectLegible(settings);
        for (const auto &allocation : {QStringLiteral("80"), QStringLiteral("00")}) {
            IP_Settings_Dialog addresses(nullptr, ip, allocation, admin, admin, network);
            expectLegible(addresses);
        }
    }

    void questionsAndNotices()
    {
        Yes_No_Dialog question(QStringLiteral("Perform factory reset?"), QStringLiteral("Confirm"),
                               QStringLiteral("Cancel"));
        expectLegible(question);
        QMessageBox notice;
        showNotice(QStringLiteral("File saved"), QMessageBox::Information, notice);
        expectLegible(notice);
        QMessageBox warning(QMessageBox::Warning, QStringLiteral(" "),
                            QStringLiteral("No connection"), QMessageBox::Ok);
        expectLegible(warning);
        QFileDialog files;
        files.setOption(QFileDialog::DontUseNativeDialog);
        expectLegible(files);
    }
};

QTEST_MAIN(DarkDesktopTest)
#include "tst_dark_desktop.moc"
