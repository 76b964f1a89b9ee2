#pragma once
#include <QLocalServer>
#include <functional>
#include <string>

namespace kro {

// The agent's end of the channel: reads one request line from each connection, answers with the line
// `handler` returns, and closes.
class QtAgentServer {
public:
    using Handler = std::function<std::string(const std::string& request)>;
    explicit QtAgentServer(Handler handler);
    // Listens on `socketPath`, replacing a stale socket file. False (with `error` set) when it cannot.
    bool listen(const std::string& socketPath, std::string& error);

private:
    void accept();
    QLocalServer server_;
    Handler handler_;
};

}  // namespace kro
