#include "ApacheDav.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/sha.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include "platform/Crypto.h"

extern char** environ;

namespace kro::testing {
namespace {

namespace fs = std::filesystem;

int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address);
    socklen_t length = sizeof address;
    ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(s);
    return ntohs(address.sin_port);
}

bool accepts(int port) {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    const bool connected = ::connect(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(s);
    return connected;
}

// The "{SHA}" form of a password file line, which Apache reads on every platform.
std::string passwordLine(const std::string& user, const std::string& password) {
    unsigned char digest[SHA_DIGEST_LENGTH];
    SHA1(reinterpret_cast<const unsigned char*>(password.data()), password.size(), digest);
    return user + ":{SHA}" + base64Encode(std::string_view(reinterpret_cast<const char*>(digest), sizeof digest));
}

std::string modulesFolder() {
    for (const char* folder : {"/usr/lib/apache2/modules", "/usr/lib64/httpd/modules", "/usr/lib/httpd/modules"}) {
        if (fs::exists(fs::path(folder) / "mod_dav.so")) return folder;
    }
    return "/usr/lib/apache2/modules";
}

}  // namespace

std::optional<std::string> ApacheDav::apacheBinary() {
    for (const char* path : {"/usr/sbin/apache2", "/usr/sbin/httpd"}) {
        if (::access(path, X_OK) == 0) return std::string(path);
    }
    return std::nullopt;
}

ApacheDav::ApacheDav(const std::string& user, const std::string& password) {
    char pattern[] = "/tmp/kro-dav-XXXXXX";
    folder_ = ::mkdtemp(pattern);
    root_ = folder_ + "/root";
    fs::create_directories(root_);
    // Apache may run its workers as another user when the test runs as root.
    fs::permissions(folder_, fs::perms::all);
    fs::permissions(root_, fs::perms::all);
    std::ofstream(folder_ + "/users") << passwordLine(user, password) << "\n";
    port_ = freePort();

    const std::string modules = modulesFolder();
    std::ofstream config(folder_ + "/httpd.conf");
    config << "ServerRoot \"" << folder_ << "\"\n"
           << "Listen 127.0.0.1:" << port_ << "\n"
           << "ServerName localhost\n"
           << "PidFile " << folder_ << "/httpd.pid\n"
           << "ErrorLog " << folder_ << "/error.log\n"
           << "LogLevel warn\n";
    for (const char* module : {"mpm_event", "authz_core", "authn_core", "authn_file", "auth_basic", "authz_user",
                               "dav", "dav_fs"}) {
        config << "LoadModule " << module << "_module " << modules << "/mod_" << module << ".so\n";
    }
    config << "<IfModule !log_config_module>\nLoadModule log_config_module " << modules << "/mod_log_config.so\n"
           << "</IfModule>\n"
           << "CustomLog " << folder_ << "/access.log \"%r %>s\"\n"
           << "DavLockDB " << folder_ << "/davlock\n"
           << "DocumentRoot " << root_ << "\n"
           << "<Directory " << root_ << ">\n  Dav On\n  AuthType Basic\n  AuthName kro\n"
           << "  AuthUserFile " << folder_ << "/users\n  Require valid-user\n</Directory>\n";
    config.close();

    start();
}

bool ApacheDav::start() {
    if (running()) return true;
    error_.clear();
    const auto binary = apacheBinary();
    if (!binary) {
        error_ = "apache2 is not installed";
        return false;
    }
    const std::string configPath = folder_ + "/httpd.conf";
    std::vector<std::string> args = {*binary, "-f", configPath, "-DFOREGROUND"};
    std::vector<char*> argv;
    for (auto& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    if (::posix_spawn(&pid, binary->c_str(), nullptr, nullptr, argv.data(), environ) != 0) {
        error_ = "apache2 could not be started";
        return false;
    }
    pid_ = pid;
    for (int attempt = 0; attempt < 100 && !accepts(port_); ++attempt) {
        int status = 0;
        if (::waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            std::ifstream log(folder_ + "/error.log");
            error_ = "apache2 stopped at start: " + std::string(std::istreambuf_iterator<char>(log), {});
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (!accepts(port_)) error_ = "apache2 does not answer on port " + std::to_string(port_);
    return error_.empty();
}

void ApacheDav::stop() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGTERM);
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
}

ApacheDav::~ApacheDav() {
    stop();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::string ApacheDav::collectionURL() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

size_t ApacheDav::requestCount() const {
    std::ifstream log(folder_ + "/access.log");
    size_t lines = 0;
    for (std::string line; std::getline(log, line);) ++lines;
    return lines;
}

SilentServer::SilentServer() {
    socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::listen(socket_, 8);  // the kernel completes the handshake; nothing ever reads or answers
    socklen_t length = sizeof address;
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
}

SilentServer::~SilentServer() { ::close(socket_); }

std::string SilentServer::url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

}  // namespace kro::testing
