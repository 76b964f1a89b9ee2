#include "platform/JsonFileDefaults.h"

#include "platform/Crypto.h"

namespace kro {

JsonFileDefaults::JsonFileDefaults(Files& files, std::string path) : files_(files), path_(std::move(path)) { reload(); }

std::string JsonFileDefaults::pathIn(const Paths& paths) {
    return paths.configHome + "/" + kBundleIdentifier + "/defaults.json";
}

void JsonFileDefaults::reload() {
    values_ = Json::object();
    const auto text = files_.read(path_);
    if (!text) return;
    auto parsed = Json::parse(*text, nullptr, false);
    if (parsed.is_object()) values_ = std::move(parsed);
}

std::optional<std::string> JsonFileDefaults::data(const std::string& key) const {
    const auto it = values_.find(key);
    if (it == values_.end() || !it->is_string()) return std::nullopt;
    return base64Decode(it->get<std::string>());
}

void JsonFileDefaults::setData(const std::string& key, const std::string& bytes) {
    values_[key] = base64Encode(bytes);
    write();
}

std::optional<bool> JsonFileDefaults::boolean(const std::string& key) const {
    const auto it = values_.find(key);
    if (it == values_.end() || !it->is_boolean()) return std::nullopt;
    return it->get<bool>();
}

void JsonFileDefaults::setBoolean(const std::string& key, bool value) {
    values_[key] = value;
    write();
}

void JsonFileDefaults::remove(const std::string& key) {
    if (values_.erase(key) > 0) write();
}

void JsonFileDefaults::synchronize() { write(); }

void JsonFileDefaults::write() {
    files_.createDirectories(parentPath(path_));
    files_.writeAtomically(path_, values_.dump(1, '\t'));
}

}  // namespace kro
