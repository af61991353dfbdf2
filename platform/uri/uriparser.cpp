#include "uri/uriparser.h"

#include <memory>
#include <uriparser/Uri.h>

namespace {

bool hasScheme(const UriUriA& uri) {
    return uri.scheme.first != nullptr && uri.scheme.first != uri.scheme.afterLast;
}

} // namespace

int URIParserInit() {
    return 0;
}

void URIParserCleanup() {}

int URIParseString(URIRecord* record, const char* text) {
    if (record == nullptr)
        return -1;
    record->parsed = nullptr;
    if (text == nullptr)
        return -1;
    auto uri = std::make_unique<UriUriA>();
    const char* errorPosition = nullptr;
    const int result = uriParseSingleUriA(uri.get(), text, &errorPosition);
    if (result != URI_SUCCESS)
        return result;
    if (!hasScheme(*uri)) {
        uriFreeUriMembersA(uri.get());
        return URI_ERROR_SYNTAX;
    }
    record->parsed = uri.release();
    return 0;
}

void URIFree(URIRecord* record) {
    if (record == nullptr || record->parsed == nullptr)
        return;
    auto* uri = static_cast<UriUriA*>(record->parsed);
    uriFreeUriMembersA(uri);
    delete uri;
    record->parsed = nullptr;
}
