// Tells whether a text is a URI (RFC 3986, with a scheme). Any thread may call these, each with a
// record of its own.
#ifndef VELCLP_PLATFORM_URI_URIPARSER_H
#define VELCLP_PLATFORM_URI_URIPARSER_H

// A parsed URI; owned by whoever declares it and ended by URIFree().
struct URIRecord {
    void* parsed = nullptr;
};

// Prepares the parser; 0 on success. Each call is matched by one of URIParserCleanup().
int URIParserInit();
void URIParserCleanup();

// Parses a text: 0 when it is a URI, and the record then needs URIFree(); otherwise not 0 and the
// record holds nothing. Null arguments are no URI.
int URIParseString(URIRecord* record, const char* text);

// Ends the record's content. An empty record and null are fine.
void URIFree(URIRecord* record);

#endif
