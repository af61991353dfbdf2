// The paging suboptions of -output, which both forms of show read, each in its own way.
#ifndef VELCLP_OUTPUT_PAGING_H
#define VELCLP_OUTPUT_PAGING_H

class CLPToken;

namespace velmora_clp {

// From start on, up to and without end; 0 <= start <= end <= count.
struct Page {
    long start;
    long end;
};

// Whether the line has any of -output number, count, begin and end.
bool hasPaging(const CLPToken& line);

// What of count objects the text form shows. count alone is a page from the beginning, and "all"
// or nothing as its value means all.
Page textPage(const CLPToken& line, long count);
// What of count targets the tree form shows. count alone means nothing, "all" reads as 0.
Page treePage(const CLPToken& line, long count);

// Whether -output order asks for the reverse.
bool isReverse(const CLPToken& line);

} // namespace velmora_clp

#endif
