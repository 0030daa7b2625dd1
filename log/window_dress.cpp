#include "log/window_dress.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>
#include <QWidget>

QString applicationTitle()
{
    return QStringLiteral("Norvik\u00ae Pelora Utility");
}

QIcon applicationIcon()
{
    return QIcon(QStringLiteral(":/img/logos/Pelora_app_icon.png"));
}

void useLightPalette()
{
    struct RoleColours
    {
        QPalette::ColorRole role;
        QRgb enabled;
        QRgb disabled;
    };
    static constexpr RoleColours colours[] = {
        {QPalette::WindowText, 0xff000000, 0xff696969},
        {QPalette::Button, 0xffefefef, 0xffefefef},
        {QPalette::Light, 0xffffffff, 0xffffffff},
        {QPalette::Midlight, 0xffcacaca, 0xffcacaca},
        {QPalette::Dark, 0xff9f9f9f, 0xffbebebe},
        {QPalette::Mid, 0xffb8b8b8, 0xffb8b8b8},
        {QPalette::Text, 0xff000000, 0xff696969},
        {QPalette::BrightText, 0xffffffff, 0xffffffff},
        {QPalette::ButtonText, 0xff000000, 0xff696969},
        {QPalette::Base, 0xffffffff, 0xffefefef},
        {QPalette::Window, 0xffefefef, 0xffefefef},
        {QPalette::Shadow, 0xff767676, 0xffb1b1b1},
        {QPalette::Highlight, 0xff2478b0, 0xff757575},
        {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
        {QPalette::Link, 0xff0000ff, 0xff0000ff},
        {QPalette::LinkVisited, 0xff800080, 0xff800080},
        {QPalette::AlternateBase, 0xfff7f7f7, 0xfff7f7f7},
        {QPalette::ToolTipBase, 0xffffffdc, 0xffffffdc},
        {QPalette::ToolTipText, 0xff000000, 0xff000000},
        {QPalette::PlaceholderText, 0xff696969, 0xff696969},
    };
    QPalette palette;
    for (const RoleColours &colour : colours) {
        palette.setColor(QPalette::All, colour.role, QColor(colour.enabled));
        palette.setColor(QPalette::Disabled, colour.role, QColor(colour.disabled));
    }
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette); // tool tips have a palette of their own
}

void dressWindow(QWidget &window, QSize size)
{
    window.setFixedSize(size);
    window.setWindowTitle(applicationTitle());
    window.setWindowIcon(applicationIcon());
}
