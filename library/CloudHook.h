#pragma once
// The last step of the change pipeline: push the library to the cloud. The sync code installs the call;
// until then the step does nothing. The caller's file, function and line travel along for its log.
#include <functional>
#include <string>

namespace kro {

using CloudUpdate = std::function<void(const std::string& file, const std::string& function, int line)>;

void setCloudUpdate(CloudUpdate update);
// Calls the installed update, if any.
void updateCloudKit(const std::string& file, const std::string& function, int line);

}  // namespace kro
