#pragma once
#include <QLocalServer>
#include <functional>
#include <string>

namespace kro {

// The agent's end of the channel: reads one request line from each connection, answers with the line the
// handler hands to `reply` (at once or later, as a sync does), and closes.
class QtAgentServer {
public:
    using Reply = std::function<void(const std::string& line)>;
    using Handler = std::function<void(const std::string& request, Reply reply)>;
    explicit QtAgentServer(Handler handler);
    // Listens on `socketPath`, replacing a stale socket file. False (with `error` set) when it cannot.
    bool listen(const std::string& socketPath, std::string& error);

private:
    void accept();
    QLocalServer server_;
    Handler handler_;
};

}  // namespace kro
