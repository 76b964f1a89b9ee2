#pragma once
#include <any>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kro {

// The in-process publisher: a post runs every listener, in the order they were added, before it returns.
// Main thread only.
class NotificationCenter {
public:
    using Handler = std::function<void(const std::any& object)>;
    using Token = unsigned long;

    Token addObserver(const std::string& name, Handler handler);
    void removeObserver(Token token);
    void post(const std::string& name, const std::any& object = {});

    // Tests switch this on to read every name posted, in order.
    void setRecording(bool on) { recording_ = on; }
    const std::vector<std::string>& postedNames() const { return posted_; }
    void clearPostedNames() { posted_.clear(); }

private:
    struct Observer {
        Token token;
        std::string name;
        Handler handler;
    };
    std::vector<Observer> observers_;
    std::vector<std::string> posted_;
    bool recording_ = false;
    Token nextToken_ = 1;
};

}  // namespace kro
