// All providers of a running simulator, found by the classes they serve: the nearest in the class
// hierarchy comes first, then those of the superclasses.
#pragma once

#include "simulator/provider.h"

#include <memory>
#include <shared_mutex>
#include <unordered_map>
#include <vector>

namespace velclp_sim {

class ProviderSet {
public:
    ProviderSet(const Repository& repository, std::vector<std::unique_ptr<Provider>> providers);

    void start();

    /// The providers that serve the class, nearest first. Any thread may call it.
    const std::vector<Provider*>& serving(const Class& cls);

    /// Has the providers bring up to date what an operation on the class may see: those that serve
    /// the class, and those that serve its subclasses.
    void refresh(const Class& cls);
    void refreshAll();

    /// True when one of the class's providers lets readers make this change.
    bool opensToReaders(Change change, const Class& cls);

private:
    struct Entry {
        std::vector<Provider*> serving;
        std::vector<Provider*> concerned;
    };

    const Entry& entry(const Class& cls);
    Entry makeEntry(const Class& cls) const;

    const Repository& repository_;
    std::vector<std::unique_ptr<Provider>> providers_;
    std::unordered_map<std::string, std::vector<Provider*>, NameHash, NameEqual> byClass_;
    std::shared_mutex mutex_;
    /// Classes never change once they are there, so an entry holds for good.
    std::unordered_map<const Class*, std::unique_ptr<const Entry>> entries_;
};

} // namespace velclp_sim
