#include "simulator/mofloader.h"

#include "simulator/mofcompiler.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace velclp_sim {

namespace {

namespace fs = std::filesystem;

constexpr int maxIncludeDepth = 32;

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    if (!in || !(text << in.rdbuf())) {
        throw std::runtime_error(path.string() + ": cannot be read");
    }
    return text.str();
}

const MofPragma* pragmaOf(const MofItem& item, std::string_view name) {
    const auto* pragma = std::get_if<MofPragma>(&item);
    return pragma && sameName(pragma->name, name) ? pragma : nullptr;
}

fs::path includedPath(const fs::path& from, const MofPragma& pragma) {
    return fs::weakly_canonical(from.parent_path() / pragma.argument);
}

} // namespace

MofLoader::MofLoader(Repository& repository, std::string nameSpace)
    : repository_(repository), nameSpace_(std::move(nameSpace)) {
    repository_.addNamespace(nameSpace_);
}

void MofLoader::addPath(const fs::path& path) {
    std::vector<fs::path> paths;
    if (fs::is_directory(path)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
            if (entry.path().extension() == ".mof") {
                paths.push_back(fs::weakly_canonical(entry.path()));
            }
        }
        std::sort(paths.begin(), paths.end());
    } else {
        paths.push_back(fs::weakly_canonical(path));
    }
    for (const fs::path& each : paths) {
        readIncludes(read(each));
    }
    const std::size_t before = roots_.size();
    for (const fs::path& each : paths) {
        const bool included =
            std::find(included_.begin(), included_.end(), each) != included_.end();
        if (!included || paths.size() == 1) {
            roots_.push_back(&files_.at(each));
        }
    }
    if (roots_.size() == before) {
        throw std::runtime_error(path.string() + ": no MOF file to begin with");
    }
}

void MofLoader::addText(std::string_view text, const std::string& name) {
    File& file = files_[name];
    file = {name, parseMof(text, name)};
    readIncludes(file);
    roots_.push_back(&file);
}

MofLoader::File& MofLoader::read(const fs::path& path) {
    const auto [slot, added] = files_.try_emplace(path);
    if (added) {
        slot->second.path = path;
        slot->second.document = parseMof(readFile(path), path.string());
    }
    return slot->second;
}

void MofLoader::readIncludes(const File& file) {
    for (const MofItem& item : file.document) {
        if (const MofPragma* include = pragmaOf(item, "include")) {
            const fs::path path = includedPath(file.path, *include);
            if (!fs::is_regular_file(path)) {
                throw MofError(include->place, "no file " + include->argument);
            }
            const bool known = files_.count(path) != 0;
            included_.push_back(path);
            File& inner = read(path);
            if (!known) {
                readIncludes(inner);
            }
        }
    }
}

void MofLoader::load() {
    MofCompiler compiler(repository_);
    for (const File* root : roots_) {
        std::string nameSpace = nameSpace_;
        compile(compiler, *root, nameSpace, 0);
    }
    compiler.finish();
}

void MofLoader::compile(MofCompiler& compiler, const File& file, std::string& nameSpace,
                        int depth) {
    for (const MofItem& item : file.document) {
        if (const auto* type = std::get_if<MofQualifierType>(&item)) {
            compiler.declare(*type, nameSpace);
        } else if (const auto* cls = std::get_if<MofClass>(&item)) {
            compiler.declare(*cls, nameSpace);
        } else if (const auto* instance = std::get_if<MofInstance>(&item)) {
            compiler.declare(*instance, nameSpace);
        } else if (const MofPragma* change = pragmaOf(item, "namespace")) {
            nameSpace = std::string(trimNamespace(change->argument));
            repository_.addNamespace(nameSpace);
        } else if (const MofPragma* include = pragmaOf(item, "include")) {
            if (depth >= maxIncludeDepth) {
                throw MofError(include->place, "files include each other");
            }
            compile(compiler, files_.at(includedPath(file.path, *include)), nameSpace, depth + 1);
        }
    }
}

} // namespace velclp_sim
