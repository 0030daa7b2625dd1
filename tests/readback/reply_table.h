#pragma once

#include "device/configuration_examples.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// Replies and what they say, typed by hand. The window and the core read them both.
///
/// A row changes the whole example answer. `core` is what is read otherwise then, "key=value", with
/// "?" for what is not told. `window` lists the places where the window keeps a way of its own,
/// "key=value" as it shows it. What neither says is the example's value; what is "?" the window
/// leaves as it was.
struct ReplyRow
{
    const char *title;
    QByteArray before;
    QByteArray after;
    QString core;
    QString window;

    QByteArray reply() const
    {
        QByteArray answer = QByteArray::fromStdString(exampleAnswer());
        if (!answer.contains(before))
            qFatal("the example has no such text");
        return answer.replace(before, after);
    }
};

inline QList<ReplyRow> replyTable()
{
    QList<ReplyRow> rows;
    const auto row = [&rows](const char *title, const char *before, const char *after,
                             const char *core, const char *window = "") {
        rows.append({title, before, after, QString::fromUtf8(core), QString::fromUtf8(window)});
    };
    row("the example", "//RL", "//RL", "");
    row("others", "Control 3", "Control 1", "usb-control=1");
    row("USB control with a colon", "Control 3", "Control: 1", "usb-control=1");
    row("words for off", "Enabled", "Disabled", "cursor-rolling=off");
    row("absolute", "Relative Mouse Mode", "Absolute Mouse Mode", "mouse-mode=absolute");
    row("silent", "Buzzer: on", "Buzzer: off", "buzzer=off");
    row("commands for words", "Relative Mouse Mode", "//km", "");
    row("two ports", "Limit: 3", "Limit: 2", "active-ports=2");
    row("four ports", "Limit: 3", "Limit: 4", "active-ports=4");
    row("more behind a number", "Limit: 3", "Limit: 4 of 4", "active-ports=4");
    row("resolutions by number", "1 10 3 13", "9,11;02\t12",
        "resolution.1=1920x4320|resolution.2=DESK|resolution.3=4K|resolution.4=HOME");
    row("resolutions by name", "1 10 3 13", "4k desk 2K 1",
        "resolution.1=4K|resolution.2=DESK|resolution.4=1080p");
    row("a resolution of no name", "1 10 3 13", "4Kx 10 3 13", "resolution.1=?");
    row("a resolution of no number", "1 10 3 13", "14 10 0 13", "resolution.1=?|resolution.3=?");
    row("three resolutions", "1 10 3 13", "2 3 4",
        "resolution.1=4K|resolution.2=2K|resolution.3=3840x1080|resolution.4=?");
    row("speeds padded with blanks", "120 080 DESK", "120  80 DESK", "");
    row("a name with blanks", "120 080 DESK", "120 080 MY DESK", "custom.2=120 80 MYDESK");
    row("another layout", "01B05", "01B16", "layout=..../.2../.3../.4.1");
    row("the layout without a channel", "04B14", "03B14", "layout=?");
    row("port limit 1", "Limit: 3", "Limit: 1", "active-ports=?");
    row("port limit 5", "Limit: 3", "Limit: 5", "active-ports=?");
    row("KM control 5", "KM Control: 2", "KM Control: 5", "km-control=?");
    row("KM control x", "KM Control: 2", "KM Control: x", "km-control=?");
    row("no KM control", "Current KM Control: 2\n", "", "km-control=?");
    row("no USB control", "Current USB Control 3\n", "", "usb-control=?");
    row("no resolutions", "Channels resolution: 1 10 3 13\n", "",
        "resolution.1=?|resolution.2=?|resolution.3=?|resolution.4=?");
    row("no layout", "//FF01B05FF02B06FF03B10FF04B14\n", "", "layout=?");

    // The window's own ways.
    // What is absent reads as "0", and so the words as off and the texts as that.
    row("no cursor rolling", "KM Cursor Rolling: Enabled\n", "", "cursor-rolling=?",
        "cursor-rolling=off");
    row("no mouse mode", "KM tracking mode: Relative Mouse Mode\n", "", "mouse-mode=?",
        "mouse-mode=absolute");
    row("no buzzer", "Buzzer: on\n", "", "buzzer=?", "buzzer=off");
    row("no hotkey", "Current Hotkey Trigger: Scroll Lock\n", "", "hotkey=?", "hotkey=0");
    row("no custom setting", "C2\t120 080 DESK\n", "", "custom.2=?", "custom.2=0");
    row("no name", "120 080 DESK", "120 080", "custom.2=?", "custom.2=120 080");
    // A damaged word is off, and speeds are shown as they are reported.
    row("a damaged word", "Enabled", "Ena\x01led", "cursor-rolling=?", "cursor-rolling=off");
    row("speeds that cannot be", "120 080 DESK", "000 501 DESK", "custom.2=?",
        "custom.2=0 501 DESK");
    row("speeds that are none", "120 080 DESK", "abc 080 DESK", "custom.2=?",
        "custom.2=abc 080 DESK");
    // Values are not trimmed, so that a CR makes words unknown and stays behind texts.
    row("CR LF", "\n", "\r\n", "",
        "cursor-rolling=off|mouse-mode=absolute|buzzer=off|hotkey=Scroll Lock\r");
    // The colon in the status text: one rule stumbles, the other selects.
    row("USB control x", "Control 3", "Control: x", "usb-control=?");
    // A reply that fails half way leaves the first half shown and the rest as it was.
    row("port limit x", "Limit: 3", "Limit: x", "active-ports=?",
        "cursor-rolling=on|buzzer=on|mouse-mode=relative|resolution.1=5760x1080|"
        "resolution.2=5760x1080|resolution.3=5760x1080|resolution.4=5760x1080|custom.1=|"
        "custom.2=|custom.3=|custom.4=|layout=1234/..../..../....");
    row("no port limit: 0 names no item", "KM Port Limit: 3\n", "", "active-ports=?");
    // Where a cell is not on the grid, or two displays share one, the window places them all the
    // same; its grid shows what it can.
    row("cell 17", "04B14", "04B17", "layout=?", "layout=..../12../.3../....");
    row("a cell of one digit and more", "04B14", "04B1x", "layout=?", "layout=4.../12../.3../....");
    row("two in one cell", "04B14", "04B05", "layout=?", "layout=..../42../.3../....");
    return rows;
}
