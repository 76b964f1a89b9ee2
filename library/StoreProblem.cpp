#include "library/StoreProblem.h"

#include <any>

#include "library/Notifications.h"
#include "platform/Environment.h"
#include "platform/Files.h"

namespace kro {

std::string StoreProblem::message() const {
    switch (kind) {
        case Kind::saveFailed: return "cannot save " + path + ": " + reason;
        case Kind::damagedKept:
            return path + " could not be read (" + reason + "); it is kept as " + fileName(keptAs) +
                   " and a new one was written";
    }
    return reason;
}

StoreProblemWatch::StoreProblemWatch()
    : token_(env().notifications->addObserver(Notifications::storeProblem, [this](const std::any& object) {
          if (const auto* problem = std::any_cast<StoreProblem>(&object)) problems_.push_back(*problem);
      })) {}

StoreProblemWatch::~StoreProblemWatch() { env().notifications->removeObserver(token_); }

std::optional<StoreProblem> StoreProblemWatch::failedSave() const {
    for (const auto& problem : problems_) {
        if (problem.kind == StoreProblem::Kind::saveFailed) return problem;
    }
    return std::nullopt;
}

}  // namespace kro
