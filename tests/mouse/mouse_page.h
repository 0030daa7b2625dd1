#pragma once

#include "mouse/mouse_settings.h"
#include "support/dialog_recorder.h"
#include "support/link_bench.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

/// Stands in for the window that reads the switch back.
class MousePageWindow : public QObject
{
    Q_OBJECT

public:
    int reads = 0;

public Q_SLOTS:
    void refresh_UI() { ++reads; }
};

/// The mouse page's widgets, wired as the main window wires them.
struct MousePage
{
    explicit MousePage(MouseSettings::Timing timing = {std::chrono::milliseconds(20)})
        : settings(window,
                   {{&resolutions[0], &resolutions[1], &resolutions[2], &resolutions[3]},
                    {&labels[0], &labels[1], &labels[2], &labels[3]},
                    &setting,
                    &name,
                    &x,
                    &y},
                   bench.link, bench.controls, timing)
    {
        setting.addItems({QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C3"),
                          QStringLiteral("C4")});
        for (int channel = 1; channel <= 4; ++channel) {
            QComboBox &combo = resolutions[channel - 1];
            combo.addItems({QStringLiteral("1080p"), QStringLiteral("4K"), QStringLiteral("2K"),
                            QStringLiteral("3840x1080"), QStringLiteral("5760x1080"),
                            QStringLiteral("7680x1080"), QStringLiteral("1920x2160"),
                            QStringLiteral("1920x3240"), QStringLiteral("1920x4320")});
            QObject::connect(&combo, &QComboBox::currentIndexChanged, &combo,
                             [this, channel] { settings.resolutionChanged(channel); });
        }
        QObject::connect(&setting, &QComboBox::currentIndexChanged, &setting,
                         [this] { settings.fillEditFields(); });
        bench.open();
    }

    /// Four settings as the switch reports them.
    void report()
    {
        const char *const values[] = {"100 250 OFFICE", "120 080 DESK", "001 500 HOME",
                                      "300 300 LAB"};
        for (int at = 0; at < 4; ++at) {
            settings.setCustomEntry(at, values[at], 8);
            settings.setDataLabel(at, values[at]);
        }
    }

    void type(const char *nameText, const char *xText, const char *yText)
    {
        name.setText(QString::fromUtf8(nameText));
        x.setText(QString::fromUtf8(xText));
        y.setText(QString::fromUtf8(yText));
    }

    QStringList customItems(int channel) const
    {
        QStringList items;
        for (int item = 9; item < resolutions[channel - 1].count(); ++item)
            items.append(resolutions[channel - 1].itemText(item));
        return items;
    }

    DialogRecorder user;
    MousePageWindow window;
    LinkBench bench;
    QComboBox resolutions[4];
    QLabel labels[4];
    QComboBox setting;
    QLineEdit name;
    QLineEdit x;
    QLineEdit y;
    MouseSettings settings;
};
