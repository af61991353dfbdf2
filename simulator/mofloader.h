// Loads a model from MOF files and directories into a repository. A directory stands for its *.mof
// files in the order of their names, but for those that another file of it includes. "#pragma
// include" is relative to the including file; "#pragma namespace" holds until the end of the file
// that was named, included files too; other pragmas mean nothing here.
#pragma once

#include "simulator/mof.h"
#include "simulator/repository.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace velclp_sim {

class MofCompiler;

class MofLoader {
public:
    /// Declarations go into `nameSpace` unless a pragma says otherwise.
    MofLoader(Repository& repository, std::string nameSpace);

    /// Reads a file, or a directory's files. Throws MofError, and std::runtime_error for a file
    /// that cannot be read.
    void addPath(const std::filesystem::path& path);

    /// Reads a text that stands in no file; `name` is its name in messages. Throws MofError.
    void addText(std::string_view text, const std::string& name);

    /// Compiles all that was read. Throws MofError; of the instances, none is there then.
    void load();

private:
    struct File {
        std::filesystem::path path;
        MofDocument document;
    };

    File& read(const std::filesystem::path& path);
    void readIncludes(const File& file);
    void compile(MofCompiler& compiler, const File& file, std::string& nameSpace, int depth);

    Repository& repository_;
    std::string nameSpace_;
    std::map<std::filesystem::path, File> files_;
    std::vector<const File*> roots_;
    std::vector<std::filesystem::path> included_;
};

} // namespace velclp_sim
