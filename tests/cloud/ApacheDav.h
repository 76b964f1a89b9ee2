#pragma once
// A private Apache with mod_dav on a free loopback port, one collection behind basic authentication, for
// the life of the object. Stopped by its own process id.
#include <optional>
#include <string>

namespace kro::testing {

class ApacheDav {
public:
    // The server program; nothing when this machine has no apache2.
    static std::optional<std::string> apacheBinary();

    ApacheDav(const std::string& user, const std::string& password);
    ~ApacheDav();

    bool running() const { return pid_ > 0 && port_ > 0; }
    // The server going away and coming back on the same port, with the same files.
    void stop();
    bool start();
    const std::string& startError() const { return error_; }
    // The collection's URL, ending in "/".
    std::string collectionURL() const;
    // The folder on disk behind the collection.
    const std::string& root() const { return root_; }
    // Lines of the access log so far: every request that reached the server.
    size_t requestCount() const;

private:
    std::string folder_;
    std::string root_;
    std::string error_;
    int port_ = 0;
    int pid_ = -1;
};

// A loopback port that accepts connections and never answers.
class SilentServer {
public:
    SilentServer();
    ~SilentServer();
    std::string url() const;

private:
    int socket_ = -1;
    int port_ = 0;
};

}  // namespace kro::testing
