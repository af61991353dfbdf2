// The word helpers of completion.
#ifndef VELCLP_TRANSUTIL_H
#define VELCLP_TRANSUTIL_H

#include <string>
#include <vector>

class TransUtil {
public:
    // What stands behind the last blank, slash, backslash, "=" or ">"; the whole text without one.
    static std::string lastword(std::string text);
    // The longest common prefix; "" for no texts.
    static std::string common_word(std::vector<std::string>& words);
};

#endif
