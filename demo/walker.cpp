#include "walker.h"

#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <cstdio>
#include <cstdlib>

Walker::Walker(const QDir &pictures) : pictures_(pictures)
{
    dialogs_.beforeButton([this](QMessageBox &box) { picture(box, QStringLiteral("notice")); });
}

void Walker::fail(const char *why, const char *what)
{
    std::fprintf(stderr, "the walk ended early: %s%s\n", why, what);
    std::exit(1);
}

void Walker::picture(QWidget &widget, const QString &name)
{
    QTest::qWait(50); // let it paint
    const QString path = pictures_.filePath(
        QStringLiteral("%1-%2.png").arg(++pictureNumber_, 2, 10, QLatin1Char('0')).arg(name));
    expect("a picture can be saved", widget.grab().save(path));
    std::printf("picture  %s\n", qPrintable(path));
    std::fflush(stdout);
}

void Walker::answer(QDialog &dialog, const QString &pictureName, const char *button)
{
    picture(dialog, pictureName);
    QTest::mouseClick(&child<QPushButton>(dialog, button), Qt::LeftButton);
}

void Walker::click(const char *button)
{
    auto &target = find<QPushButton>(button);
    expect(button, target.isEnabled() && target.isVisible());
    QTest::mouseClick(&target, Qt::LeftButton);
}

void Walker::choose(const char *combo, int index)
{
    auto &target = find<QComboBox>(combo);
    expect(combo, target.isEnabled() && target.isVisible());
    target.setFocus();
    while (target.currentIndex() != index)
        QTest::keyClick(&target, target.currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
}

void Walker::type(const char *lineEdit, const QString &text)
{
    auto &target = find<QLineEdit>(lineEdit);
    target.clear();
    QTest::keyClicks(&target, text);
}

void Walker::waitUntil(const char *what, const std::function<bool()> &seen)
{
    if (!QTest::qWaitFor(seen, 10'000))
        fail("waited in vain: ", what);
}

void Walker::waitForNotice(const QString &text)
{
    waitUntil("a notice", [this] { return dialogs_.seen().size() > noticesAwaited_; });
    const QString seen = dialogs_.seen().at(noticesAwaited_++).text;
    tell("notice", seen);
    expect("the notice says what was awaited", seen == text);
}

void Walker::expect(const char *what, bool holds)
{
    if (!holds)
        fail("not so: ", what);
}

void Walker::tell(const char *name, const QString &value)
{
    std::printf("read     %s: %s\n", name, qPrintable(value));
    std::fflush(stdout);
}

bool Walker::isGreen() const
{
    return find<QPushButton>("pushButton_Connection_Indicator")
        .styleSheet()
        .contains(QStringLiteral("green"));
}
