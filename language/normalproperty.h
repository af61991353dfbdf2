// The normal form of a list of properties: one entry a name, with a multiple value as a ":"-joined
// list of "value,index" pairs. A plain name with a comma list counts its positions from 0;
// "name:index" entries are gathered under their name. Replaces the list.
#ifndef LANGUAGE_NORMALPROPERTY_H
#define LANGUAGE_NORMALPROPERTY_H

#include <string>
#include <utility>
#include <vector>

void normalProperty(std::vector<std::pair<std::string, std::string>>& list);

#endif
