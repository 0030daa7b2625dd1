#include "switch_picture.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

namespace {
/// Collects what differs, one remark each.
class Differences
{
public:
    void compare(const QByteArray &what, const QByteArray &seen, const QByteArray &expected)
    {
        if (seen != expected)
            remarks_.append(what + " is \"" + seen + "\", not \"" + expected + "\"");
    }
    QString text() const { return QString::fromUtf8(remarks_.join("; ")); }

private:
    QByteArrayList remarks_;
};

template <typename Widget>
const Widget &find(const QWidget &window, const QByteArray &name)
{
    const auto *found = window.findChild<Widget *>(QString::fromLatin1(name));
    if (found == nullptr)
        qFatal("the window has no %s", name.constData());
    return *found;
}

QByteArray index(const QWidget &window, const QByteArray &name, int plus)
{
    return QByteArray::number(find<QComboBox>(window, name).currentIndex() + plus);
}

QByteArray text(const QWidget &window, const QByteArray &name)
{
    return asPrinted(find<QLabel>(window, name).text().toUtf8());
}

/// "1 20 WALL" as X, Y and name.
QByteArrayList customParts(const QByteArray &printed)
{
    const qsizetype first = printed.indexOf(' ');
    const qsizetype second = printed.indexOf(' ', first + 1);
    return {printed.left(first), printed.mid(first + 1, second - first - 1),
            printed.mid(second + 1)};
}

QByteArray inThreeDigits(const QByteArray &number)
{
    return number.rightJustified(3, '0');
}

QByteArray withoutBlanks(QByteArray name)
{
    return name.replace(' ', "");
}

/// "001 020 WALL", in the columns in which the switch reports it.
QByteArray customColumns(const QByteArray &printed)
{
    const QByteArrayList parts = customParts(printed);
    return inThreeDigits(parts.at(0)) + " " + inThreeDigits(parts.at(1)) + " " + parts.at(2);
}

QByteArray shownLayout(const QWidget &window, int activePorts)
{
    const auto &table = find<QTableWidget>(window, "tableWidget");
    QByteArrayList cells(4, QByteArray("--"));
    for (int place = 0; place < 16; ++place) {
        const auto *item = table.item(place / 4, place % 4);
        if (item == nullptr)
            continue;
        const QByteArray label = item->text().toUtf8();
        for (int channel = 1; channel <= 4; ++channel) {
            const QByteArray name = "Channel " + QByteArray::number(channel);
            if (label == (channel > activePorts ? name + "\nINACTIVE" : name))
                cells[channel - 1] = QByteArray::number(place + 1).rightJustified(2, '0');
        }
    }
    return cells.join(' ');
}
} // namespace

QByteArray asPrinted(const QByteArray &text)
{
    QByteArray printed;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7f)
            printed += character;
        else
            printed += "\\x" + QByteArray(1, character).toHex().toUpper();
    }
    return printed;
}

QList<SwitchPicture> picturesIn(const QByteArray &text)
{
    QList<SwitchPicture> pictures(1);
    const QByteArrayList lines = text.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("Unit ") && !pictures.last().isEmpty())
            pictures.append(SwitchPicture());
        const qsizetype colon = line.indexOf(": ");
        if (colon > 0)
            pictures.last().insert(line.left(colon), line.mid(colon + 2));
    }
    return pictures;
}

QString differenceToWindow(const SwitchPicture &picture, const QWidget &window, bool isNameKnown)
{
    Differences found;
    const int activePorts = picture["Active ports"].toInt();
    found.compare("KM control", index(window, "comboBox_KM_Control", 1), picture["KM control"]);
    found.compare("USB control", index(window, "comboBox_USB_Control", 1), picture["USB control"]);
    found.compare("active ports", index(window, "comboBox_Select_active_port", 2),
                  picture["Active ports"]);
    found.compare("mouse mode", index(window, "comboBox_Select_Display_Mode", 0),
                  picture["Mouse mode"] == "relative" ? "1" : "0");
    found.compare("cursor rolling", index(window, "comboBox_Enable_or_Disable_Cursor_Roll", 0),
                  picture["Cursor rolling"] == "on" ? "1" : "0");
    found.compare("the buzzer",
                  find<QPushButton>(window, "pushButton_ON_Beep").isEnabled() ? "off" : "on",
                  picture["Buzzer"]);
    found.compare("the layout", shownLayout(window, activePorts), picture["Layout"]);
    found.compare("the hotkey trigger", text(window, "label_Current_Hotkey_Trigger_Data"),
                  picture["Hotkey trigger"]);
    const QByteArrayList resolutions = picture["Resolutions"].split(' ');
    for (int at = 1; at <= 4; ++at) {
        const QByteArray digit = QByteArray::number(at);
        const QByteArray custom = picture["Custom " + digit];
        const QByteArray selector = "comboBox_mouse_movement_resolution_setting_" + digit;
        found.compare("custom setting " + digit, text(window, "label_Custom_" + digit),
                      customColumns(custom));
        found.compare("the resolution of channel " + digit, index(window, selector, 1),
                      resolutions.value(at - 1));
        for (int channel = 1; channel <= 4; ++channel) {
            const auto &items =
                find<QComboBox>(window, "comboBox_mouse_movement_resolution_setting_" +
                                            QByteArray::number(channel));
            found.compare("entry " + digit + " of channel " + QByteArray::number(channel),
                          asPrinted(items.itemText(8 + at).toUtf8()),
                          withoutBlanks(customParts(custom).at(2)));
        }
    }
    const auto &address = find<QLabel>(window, "label_current_Ip");
    if (address.isVisible() && picture.contains("Module address"))
        found.compare("the module's address", address.text().toUtf8(),
                      "  IP: " + picture["Module address"]);
    const auto &name = find<QLabel>(window, "label_name_of_USR");
    if (name.isVisible() && picture.contains("Module name") && isNameKnown)
        found.compare("the module's name", asPrinted(name.text().toUtf8()),
                      "  Name: " + picture["Module name"]);
    return found.text();
}

QByteArrayList describingLines(const SwitchPicture &picture)
{
    const bool rolling = picture["Cursor rolling"] == "on";
    const int activePorts = picture["Active ports"].toInt();
    const QByteArrayList resolutions = picture["Resolutions"].split(' ');
    const QByteArrayList cells = picture["Layout"].split(' ');
    QByteArrayList lines = {"KM Control: //c" + picture["KM control"],
                            "USB Control: //u" + picture["USB control"],
                            "Limit Ports: //D" + picture["Active ports"],
                            QByteArray("Cursor Rolling: ") + (rolling ? "//o1" : "//o0")};
    QByteArrayList customs;
    QByteArrayList labels;
    QByteArrayList places;
    QByteArray grid = "Grid settings: //";
    for (int at = 1; at <= 4; ++at) {
        const QByteArray digit = QByteArray::number(at);
        const QByteArrayList custom = customParts(picture["Custom " + digit]);
        lines.append("Resolution channel " + digit + ": //CE " + digit + " " +
                     resolutions.value(at - 1));
        customs.append("Custom mouse movement setting " + digit + ": //MM C" + digit + " " +
                       inThreeDigits(custom.at(0)) + " " + inThreeDigits(custom.at(1)) + " " +
                       withoutBlanks(custom.at(2)));
        labels.append("Data from mouse movement label " + digit + ": " +
                      customColumns(picture["Custom " + digit]));
        const int cell = cells.value(at - 1).toInt() - 1;
        // An inactive display is written with the digit 3, as switches in the field get it.
        grid += "FF0" + (at > activePorts ? QByteArray("3") : digit) + "B" + cells.value(at - 1);
        places.append("Coordinates channel " + digit + ": " + QByteArray::number(cell / 4) + " " +
                      QByteArray::number(cell % 4));
    }
    return lines + customs + labels + QByteArrayList{grid} + places +
           QByteArrayList{picture["Buzzer"] == "on" ? "Buzzer: //B1" : "Buzzer: //B0",
                          picture["Mouse mode"] == "relative" ? "Mouse Mode: //km"
                                                              : "Mouse Mode: //ks"};
}

QString differenceToFile(const SwitchPicture &picture, const QByteArray &text)
{
    const QByteArrayList lines = text.split('\n');
    const QByteArrayList expected = describingLines(picture);
    Differences found;
    found.compare("the number of lines", QByteArray::number(lines.size() - 1),
                  QByteArray::number(expected.size()));
    for (qsizetype at = 0; at < expected.size(); ++at)
        found.compare("line " + QByteArray::number(at + 1), asPrinted(lines.value(at)),
                      expected.at(at));
    return found.text();
}
