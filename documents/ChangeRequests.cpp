#include "documents/ChangeRequests.h"

#include <memory>

#include "cloud/LibraryRequests.h"
#include "documents/DocumentHandler.h"
#include "library/StoreProblem.h"
#include "library/User.h"
#include "library/UserUndo.h"

namespace kro {
namespace {

Json refused(const std::string& error) { return Json{{"ok", false}, {"error", error}}; }

bool isTrue(const Json& request, const char* key) { return request.contains(key) && request[key] == true; }

bool isImport(const Json& request) {
    if (!request.contains("import") || !request["import"].is_array()) return false;
    for (const auto& path : request["import"]) {
        if (!path.is_string()) return false;
    }
    return true;
}

Json importReply(const Json& request) {
    const auto summary = DocumentHandler::openFiles(request["import"].get<std::vector<std::string>>());
    if (!summary.importedAnything() && summary.duplicates == 0) {
        const bool failed = !summary.failed.empty();
        return refused(summary.message() + (failed ? ": " + summary.failed.front().reason : std::string()));
    }
    Json warnings = Json::array();
    for (const auto& skipped : summary.failed) warnings.push_back("skipped " + skipped.path + ": " + skipped.reason);
    return Json{{"ok", true}, {"lines", {summary.message()}}, {"warnings", std::move(warnings)}};
}

std::string libraryCount(const User& user) {
    const auto colors = user.history->colors.size();
    return std::to_string(user.palettes.size()) + (user.palettes.size() == 1 ? " palette and " : " palettes and ") +
           std::to_string(colors) + (colors == 1 ? " history color" : " history colors");
}

Json undoReply(bool redo) {
    auto& undo = UserUndo::shared();
    // The history is kept in memory by the process that made the changes: a command that runs alone has none.
    if (!(redo ? undo.canRedo() : undo.canUndo()))
        return refused(std::string(redo ? "nothing to redo" : "nothing to undo") +
                       ": only changes made while the agent runs can be undone, and it has none");
    if (!(redo ? undo.redo() : undo.undo())) return refused("the library's earlier state could not be read back");
    return Json{{"ok", true},
                {"lines", {std::string(redo ? "Redone" : "Undone") + ": the library has " + libraryCount(*User::shared())}}};
}

}  // namespace

bool isChangeRequest(const Json& request) {
    return isLibraryRequest(request) ||
           (request.is_object() && (isImport(request) || isTrue(request, "undo") || isTrue(request, "redo")));
}

void handleChangeRequest(const Json& request, const std::function<void(const Json& reply)>& reply) {
    // Every store problem until the reply belongs to this request (a sync answers later).
    auto watch = std::make_shared<StoreProblemWatch>();
    auto finish = [watch, reply](Json answer) {
        Json warnings = answer.value("warnings", Json::array());
        for (const auto& problem : watch->problems()) {
            if (problem.kind == StoreProblem::Kind::damagedKept) warnings.push_back(problem.message());
        }
        if (const auto failed = watch->failedSave()) answer = refused(failed->message());
        if (!warnings.empty()) answer["warnings"] = std::move(warnings);
        reply(answer);
    };
    if (!isChangeRequest(request)) return finish(refused("the request is not understood"));
    if (isImport(request)) return finish(importReply(request));
    if (isTrue(request, "undo") || isTrue(request, "redo")) return finish(undoReply(isTrue(request, "redo")));
    handleLibraryRequest(request, finish);
}

}  // namespace kro
