// The response of show in its tree form.
#include "output/displayoption.h"
#include "output/parsedline.h"
#include "output/showtree.h"
#include "output/writer.h"
#include "velclp/assertion.h"
#include "velclp/clpstatus.h"
#include "velclp/log.h"

namespace velmora_clp {

namespace {

// Names on the line show these properties alone; an association shows associations alone.
_show_filter filterOf(const CLPToken& line) {
    _show_filter filter;
    const bool all = line.hasOption(OPT_ALL);
    const auto add = [&filter, all](int flag, int withAll) {
        filter.flags |= flag | (all ? withAll : 0);
    };
    if (sectionShown(line, OPT_DISPLAY_PROPERTIES, filter.properties))
        add(_show_filter::PROPERTIES, _show_filter::ALL_PROPERTIES);
    if (sectionShown(line, OPT_DISPLAY_TARGETS, filter.targets))
        add(_show_filter::TARGETS, _show_filter::OEM_TARGETS);
    if (sectionShown(line, OPT_DISPLAY_ASSOCIATIONS, filter.associations))
        add(_show_filter::ASSOCIATIONS, 0);
    if (verbsShown(line))
        add(_show_filter::VERBS, _show_filter::OEM_VERBS);
    const std::vector<std::string> names = line.getPropertyNames(CLPToken::PROPERTY_NAME);
    if (!names.empty()) {
        filter.flags = _show_filter::PROPERTIES | _show_filter::ALL_PROPERTIES;
        filter.properties.insert(filter.properties.end(), names.begin(), names.end());
    }
    if (!line._AssocClass.empty())
        filter.flags = _show_filter::ASSOCIATIONS;
    return filter;
}

} // namespace

void COutputer::show_output(Token token, _CLPStatus* status, std::list<TargetGroup*>* groups,
                            CLPCommand* command) {
    VELCLP_TRACE("CLP.COutputer.show_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, {T_SHOW, "Retrive information of the target"}, form))
        return;
    _show_filter filter = filterOf(parsedLine(token));
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        out.pair(T_COMMAND, T_SHOW);
    else if (form == CLPXML_FORM)
        out.open(T_SHOW);
    if (groups)
        show_result(token, groups, &filter, form, command);
    if (form == KEYWORD_FORM)
        out.endoutput();
    else if (form == CLPXML_FORM)
        out.close(T_SHOW).close_response();
}

void COutputer::show_result(Token token, std::list<TargetGroup*>* groups, _show_filter* filter,
                            int form, CLPCommand* command) {
    VELCLP_TRACE("CLP.COutputer.show_result");
    ShowTree(*this, parsedLine(token), *filter, form, *command).print(*groups);
}

} // namespace velmora_clp
