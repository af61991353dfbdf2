#include "simulator/providerset.h"

#include <algorithm>
#include <mutex>

namespace velclp_sim {

ProviderSet::ProviderSet(const Repository& repository,
                         std::vector<std::unique_ptr<Provider>> providers)
    : repository_(repository), providers_(std::move(providers)) {
    for (const auto& provider : providers_) {
        for (const std::string& name : provider->classes()) {
            byClass_[name].push_back(provider.get());
        }
    }
}

void ProviderSet::start() {
    for (const auto& provider : providers_) {
        provider->start();
    }
}

ProviderSet::Entry ProviderSet::makeEntry(const Class& cls) const {
    Entry entry;
    const auto add = [&](std::vector<Provider*>& list, const Class& of) {
        const auto found = byClass_.find(of.name);
        if (found == byClass_.end()) {
            return;
        }
        for (Provider* provider : found->second) {
            if (std::find(list.begin(), list.end(), provider) == list.end()) {
                list.push_back(provider);
            }
        }
    };
    for (const Class* each = &cls; each; each = each->super) {
        add(entry.serving, *each);
    }
    entry.concerned = entry.serving;
    for (const Class* below : repository_.subclasses(cls.nameSpace, cls.name, true)) {
        add(entry.concerned, *below);
    }
    return entry;
}

const ProviderSet::Entry& ProviderSet::entry(const Class& cls) {
    {
        const std::shared_lock<std::shared_mutex> lock(mutex_);
        if (const auto found = entries_.find(&cls); found != entries_.end()) {
            return *found->second;
        }
    }
    auto made = std::make_unique<const Entry>(makeEntry(cls));
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    return *entries_.emplace(&cls, std::move(made)).first->second;
}

const std::vector<Provider*>& ProviderSet::serving(const Class& cls) {
    return entry(cls).serving;
}

void ProviderSet::refresh(const Class& cls) {
    for (Provider* provider : entry(cls).concerned) {
        provider->refresh();
    }
}

void ProviderSet::refreshAll() {
    for (const auto& provider : providers_) {
        provider->refresh();
    }
}

bool ProviderSet::opensToReaders(Change change, const Class& cls) {
    const auto& list = serving(cls);
    return std::any_of(list.begin(), list.end(), [&](const Provider* provider) {
        return provider->opensToReaders(change, cls);
    });
}

} // namespace velclp_sim
