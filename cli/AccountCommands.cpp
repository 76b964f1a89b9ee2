#include "cli/AccountCommands.h"

#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "cloud/CloudAccount.h"
#include "platform/Environment.h"

namespace kro::cli {
namespace {

using SecretsFactory = std::function<std::unique_ptr<SecretStore>()>;

const char* kUsage = "kro account [set [--allow-http] URL USER | remove]";

// Reads one line without echo when standard input is the terminal; else the first line as it comes.
std::optional<std::string> readPassword(CommandContext& context, const std::string& user) {
    const bool terminal = &context.in == &std::cin && ::isatty(STDIN_FILENO);
    std::string password;
    if (!terminal) {
        if (!std::getline(context.in, password) && password.empty()) return std::nullopt;
        if (!password.empty() && password.back() == '\r') password.pop_back();
        return password;
    }
    termios saved{};
    const bool canHide = ::tcgetattr(STDIN_FILENO, &saved) == 0;
    if (canHide) {
        termios hidden = saved;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    context.err << "Password for " << user << ": " << std::flush;
    const bool read = static_cast<bool>(std::getline(context.in, password));
    if (canHide) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
    context.err << "\n";
    if (!read) return std::nullopt;
    return password;
}

int show(CommandContext& context) {
    std::string problem;
    const auto account = loadCloudAccount(&problem);
    if (!account) {
        context.out << "signed out\n";
        if (!problem.empty()) context.err << "kro: " << problem << "\n";
    } else {
        context.out << account->server << " " << account->user << (account->allowHttp ? " (plain http allowed)" : "")
                    << "\n";
    }
    return exitDone;
}

int set(CommandContext& context, const CloudAccount& account, const SecretsFactory& secrets) {
    if (auto problem = cloudAccountProblem(account)) return fail(context, *problem);
    auto password = readPassword(context, account.user);
    if (!password) return fail(context, "no password was given");
    auto store = secrets();
    // The password first: an account without its password is not left behind.
    if (!store->setPassword(account.server, account.user, *password)) {
        return fail(context, "the password could not be kept in " + store->description());
    }
    const auto previous = loadCloudAccount();
    if (!saveCloudAccount(account)) return fail(context, "cannot write " + cloudAccountPath());
    if (previous && !(*previous == account)) store->removePassword(previous->server, previous->user);
    context.out << "Syncing as " << account.user << " with " << account.server << "; the password is kept in "
                << store->description() << "\n";
    return exitDone;
}

int remove(CommandContext& context, const SecretsFactory& secrets) {
    const auto account = loadCloudAccount();
    if (!removeCloudAccount()) return fail(context, "cannot remove " + cloudAccountPath());
    if (account) secrets()->removePassword(account->server, account->user);
    context.out << "signed out\n";
    return exitDone;
}

}  // namespace

void registerAccountCommands(CommandTable& table, SecretsFactory secrets) {
    table.insert_or_assign("account", Command{kUsage, [secrets](CommandContext& context) {
        const Command usage{kUsage, nullptr};
        const auto& args = context.args;
        if (args.empty()) return show(context);
        if (args[0] == "set") {
            std::vector<std::string> operands(args.begin() + 1, args.end());
            const auto flag = std::find(operands.begin(), operands.end(), "--allow-http");
            const bool allowHttp = flag != operands.end();
            if (allowHttp) operands.erase(flag);
            if (operands.size() == 2) return set(context, {operands[0], operands[1], allowHttp}, secrets);
        }
        if (args[0] == "remove" && args.size() == 1) return remove(context, secrets);
        return usageError(context, usage);
    }});
}

void registerAccountCommands(CommandTable& table) {
    registerAccountCommands(table, [] { return makeSecretStore(env().paths); });
}

}  // namespace kro::cli
