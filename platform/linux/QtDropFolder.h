#pragma once
// The drop folder on inotify: a file counts as arrived when its writer closes it.
#include <QSocketNotifier>

#include <map>
#include <memory>
#include <set>

#include "platform/BridgeChannels.h"

namespace kro {

class QtDropFolder final : public DropFolder {
public:
    // `folder` is made private (0700) on first use; files left in it from an earlier run are removed.
    explicit QtDropFolder(std::string folder) : folder_(std::move(folder)) {}
    ~QtDropFolder() override;
    std::string path() override;
    void await(const std::string& name, Arrived arrived) override;
    void forget(const std::string& name) override;

private:
    bool watch();
    void readEvents();
    void collect(const std::string& name);

    std::string folder_;
    bool ready_ = false;
    int inotify_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::map<std::string, Arrived> waiting_;
};

}  // namespace kro
