// The folder that holds all configurations: the one place that finds, spells and lists them.
//
// A configuration's name is that of its file without `.dta`. It may come from the tree, which has
// it as the folder spells it, or from a user or another program, who may not. A name that holds
// "/", "\" or NUL names no file, without a look at the disk.
//
// A value, from which every call looks at the folder as it is then.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/result.h"

namespace velto {

class ConfigFolder {
  public:
    // A host path without a separator at its end.
    explicit ConfigFolder(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }
    // Of a file, not of a name.
    std::string PathOf(const std::string& file) const;

    // The file of a name as Velto itself spells it, and the name of a file, whose ending may be
    // spelled otherwise.
    static std::string FileOf(std::string_view name);
    static std::string NameOf(std::string_view file);

    // The file that a name means to a user, as it is spelled in the folder: the exact one first,
    // else one that differs in case. Nothing if there is none.
    std::optional<std::string> Find(std::string_view name) const;
    // Whether the file of that name is there in exactly this spelling. Reports, calling it
    // `subject`, if it isn't, or if the folder can't be read.
    bool CheckIsThere(const std::string& name, const std::string& subject) const;
    // The file of the tree's configuration: the ending alone may be spelled otherwise, as a file
    // whose name differs elsewhere is another configuration. FileOf if there is none.
    std::string Spelled(const std::string& name) const;
    // Where to write what the name means: over the file that Find gives, or to a new one. Fails
    // if no file can have that name.
    platform::Result<std::string> Target(const std::string& name) const;

    // All files in search order, for who opens all of them anyway, and so is told which are no
    // files: what isn't one is among them. Fails if the folder can't be read.
    platform::Result<std::vector<std::string>> List() const;
    // The files of all configurations by name, each as Spelled gives it: for many names, as
    // Spelled may list the folder for each. Empty if the folder can't be read.
    std::map<std::string, std::string> Spellings() const;

  private:
    std::string path_;
};

}  // namespace velto
