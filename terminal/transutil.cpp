#include "velclp/transutil.h"

#include <algorithm>

std::string TransUtil::lastword(std::string text) {
    const std::size_t border = text.find_last_of(" /\\=>");
    return border == std::string::npos ? text : text.substr(border + 1);
}

std::string TransUtil::common_word(std::vector<std::string>& words) {
    if (words.empty())
        return std::string();
    std::string common = words.front();
    for (const std::string& word : words) {
        const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end());
        common.erase(end.first, common.end());
    }
    return common;
}
