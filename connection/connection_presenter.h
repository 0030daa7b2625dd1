#pragma once

#include <QObject>
#include <memory>

class ConnectionControls;
class DeviceLink;
class QLabel;
class QMessageBox;
class TerminalView;

/// Turns what the link says of its connections into what the window shows: indicator, enabled
/// controls, module labels, terminal, notices and lines of the event log.
class ConnectionPresenter : public QObject
{
    Q_OBJECT

public:
    struct Widgets
    {
        QLabel *currentIp;
        QLabel *moduleName;
    };

    ConnectionPresenter(DeviceLink &link, ConnectionControls &controls, TerminalView &terminal,
                        Widgets widgets);
    ~ConnectionPresenter() override;

private:
    void showOpened();
    void showOpenFailure(const QString &reason);
    void showBreak(const QString &name, const QString &reason);
    void showSilence();
    void showModule(const QString &address, const QString &name);

    ConnectionControls &controls_;
    TerminalView &terminal_;
    Widgets widgets_;
    std::unique_ptr<QMessageBox> lostLinkNotice_; ///< made when it is needed first
};
