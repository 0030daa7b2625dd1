#pragma once

#include "cli/device.h"
#include "session/module_search.h"

#include <QPointer>
#include <functional>
#include <vector>

/// Searches for network modules on behalf of many: one at a time, because the port on which modules
/// answer can be had once.
class SharedSearch : public QObject
{
    Q_OBJECT

public:
    explicit SharedSearch(const ModuleNetwork &network, QObject *parent = nullptr);

    using Take = std::function<void(const ModuleSearchResult &found)>;

    /// `take` gets what a search finds that begins after this call, unless `context` is gone by
    /// then.
    void search(QObject *context, Take take);

    /// The search itself, for a record.
    ModuleSearch &underlying() { return search_; }

private:
    struct Request
    {
        QPointer<QObject> context;
        Take take;
    };

    void begin();
    void onFinished(const ModuleSearchResult &found);

    ModuleSearch search_;
    std::vector<Request> next_;
    std::vector<Request> running_;
    bool isRunning_ = false;
};

/// The module that `device` names: by its MAC or its name, or by its address for a road over UDP.
/// Throws Failure where there is none, or more than one.
ModuleOnLan moduleOf(const Device &device, const ModuleSearchResult &found);
