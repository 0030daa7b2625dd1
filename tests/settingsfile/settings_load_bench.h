#pragma once

#include "settings_scene.h"

/// The settings file of these tests, with every key.
inline constexpr char exampleText[] = "KM Control: //c3\n"
                                      "USB Control: //u2\n"
                                      "Limit Ports: //D3\n"
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

/// What is said when the connection ends between the halves.
inline const auto incomplete =
    QStringLiteral("Settings file not applied completely: the connection ended");

/// What the example sends at once, and what follows two seconds later.
inline const QByteArrayList firstHalf = {"//c3\r",
                                         "//MM C1 100 250 OFFICE\r",
                                         "//MM C2 120 080 DESK\r",
                                         "//MM C3 001 500 HOME\r",
                                         "//MM C4 300 300 LAB\r",
                                         "//CE 1 3\r",
                                         "//CE 2 10\r",
                                         "//CE 3 1\r",
                                         "//CE 4 13\r"};

inline const QByteArrayList secondHalf = {
    "//u2\r", "//D3\r", "//o1\r", "//FF01B05FF02B06FF03B10FF04B14\r", "//B1\r", "//km\r"};

/// The example without the line of one key, or with another value for it.
inline QByteArray exampleWithout(const QByteArray &key)
{
    QByteArrayList lines = QByteArray(exampleText).split('\n');
    lines.removeIf([&](const QByteArray &line) { return line.startsWith(key); });
    return lines.join('\n');
}

inline QByteArray exampleWith(const QByteArray &key, const QByteArray &value)
{
    return exampleWithout(key) + key + value + '\n';
}

/// What the tests of loading share: a scene of its own for every test function.
class SettingsLoadBench : public QObject
{
    Q_OBJECT

protected:
    /// Lets the timer of the second half run out; it has fired when one that was started later has.
    void waitForSecondPart()
    {
        bool later = false;
        QTimer::singleShot(60, &s_->window, [&] { later = true; });
        QTRY_VERIFY(later);
    }

    std::unique_ptr<SettingsScene> s_;

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init() { s_ = std::make_unique<SettingsScene>(); }
    void cleanup() { s_.reset(); }
};
