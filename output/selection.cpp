// What the text form of show prints: decided once from the line and the class, and for value
// selectors once more for every object. What cannot be read or is not known is not shown.
#include "output/classes.h"
#include "output/displayoption.h"
#include "output/parsedline.h"
#include "output/propvalue.h"
#include "schema/cimnamespace.h"
#include "velclp/cimhandle.h"
#include "velclp/clpstring.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <algorithm>

namespace velmora_clp {

namespace {

using Names = std::vector<std::string>;

// An emptied entry is skipped by the printer.
template<typename Predicate>
void blankIf(Names& names, const Predicate& predicate) {
    for (std::string& name : names)
        if (predicate(name))
            name.clear();
}

void blankOemTargets(const CLPToken& line, FilterResult* result) {
    if (!line.hasOption(OPT_ALL))
        blankIf(result->target_ufcts, beginsWithOem);
}

bool hasClassProperty(CMPIConstClass* cimclass, const std::string& name) {
    CimStatus status;
    cimclass->ft->getProperty(cimclass, name.c_str(), status.out());
    return status.rc() != CMPI_RC_ERR_NO_SUCH_PROPERTY;
}

void addClassProperties(CMPIConstClass* cimclass, std::map<std::string, PropValue*>& properties) {
    CimStatus status;
    const unsigned int count = cimclass->ft->getPropertyCount(cimclass, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        CMPIString* name = nullptr;
        cimclass->ft->getPropertyAt(cimclass, i, &name, status.out());
        const CimString owned(name);
        if (status.ok() && name)
            properties.emplace(cimText(name), nullptr);
    }
}

void keepListed(const Names& names, std::map<std::string, PropValue*>& properties) {
    for (auto property = properties.begin(); property != properties.end();) {
        if (listed(names, property->first)) {
            ++property;
        } else {
            freePropValue(property->second);
            property = properties.erase(property);
        }
    }
}

// What a value selector is compared with.
std::string selectorText(const CMPIData& data) {
    return isNullValue(data) ? "NULL" : cimValueText(data.type, data.value);
}

// Gives the value to the entry of that name, in any case, if it is to be printed; frees it
// otherwise.
void keepForPrinting(std::map<std::string, PropValue*>& properties, const std::string& name,
                     OwnedPropValue value) {
    for (auto& property : properties) {
        if (strcmp_nocase(property.first.c_str(), name.c_str()) != 0)
            continue;
        freePropValue(property.second);
        property.second = value.release();
        return;
    }
}

} // namespace

bool COutputer::CheckSelectorStatic(Token token, FilterResult* result) {
    constexpr char const* FUNCTION = "CLP.COutputer.CheckSelectorStatic";
    VELCLP_TRACE(FUNCTION);
    const CLPToken& line = parsedLine(token);
    result->display = result->show_properties = result->show_associations = false;
    result->show_verbs = result->show_targets = result->association_only = false;
    result->cim_class_def = nullptr;
    result->ufct = defaultTagOf(knownClassOf(result->cim_class));
    if (result->ufct.empty()) {
        VELCLP_LOG_FAILURE(FUNCTION, "Cannot find ufct of this Cimclass");
        return false;
    }
    result->cim_namespace = namespaceOf(result->cim_class);
    const Names names = line.getPropertyNames(CLPToken::PROPERTY_NAME);
    if (!names.empty() && !read_class(result)) {
        VELCLP_LOG_FAILURE(FUNCTION, "Get Class failed");
        return false;
    }
    const Names& pseudo = CLPSchema::getInstance()->getPseudoProperties(result->ufct);
    result->display = std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        return hasClassProperty(result->cim_class_def, name) || listed(pseudo, name);
    });
    _dump_FilterResult(result, FUNCTION);
    return result->display && !line.getPropertyNames(CLPToken::FILTER_PROPERTY).empty();
}

void COutputer::FilterCheckT(Token token, FilterResult* result) {
    VELCLP_TRACE("CLP.COutputer.FilterCheckT");
    select_targets(token, result);
    select_verbs(token, result);
    select_associations(token, result);
    std::vector<std::string> names;
    if (sectionShown(parsedLine(token), OPT_DISPLAY_PROPERTIES, names)) {
        select_properties(token, result, result->ufct, result->cim_class);
        result->show_properties = true;
    }
    _dump_FilterResult(result, "CLP.COutputer.FilterCheckT");
}

void COutputer::select_targets(const Token& token, FilterResult* result) {
    const CLPToken& line = parsedLine(token);
    Names names;
    if (!sectionShown(line, OPT_DISPLAY_TARGETS, names))
        return;
    const CLPSchema& schema = *CLPSchema::getInstance();
    result->target_ufcts = schema.getChildren_ufcts(knownClassOf(result->cim_class));
    if (!names.empty())
        blankIf(result->target_ufcts,
                [&names](const std::string& ufct) { return !listed(names, ufct); });
    blankOemTargets(line, result);
    std::copy_if(result->target_ufcts.begin(), result->target_ufcts.end(),
                 std::back_inserter(result->dynamic_ufcts), [&schema](const std::string& ufct) {
                     return !ufct.empty() && schema.getType(schema.getCIMClass(ufct)) == "dynamic";
                 });
    result->show_targets = true;
}

// Without -all vendor verbs stay: what is blanked is the targets once more.
void COutputer::select_verbs(const Token& token, FilterResult* result) {
    const CLPToken& line = parsedLine(token);
    if (!verbsShown(line))
        return;
    result->verbs = CLPSchema::getInstance()->getVerbs_class(knownClassOf(result->cim_class));
    blankOemTargets(line, result);
    result->show_verbs = true;
}

void COutputer::select_associations(const Token& token, FilterResult* result) {
    Names names;
    if (!sectionShown(parsedLine(token), OPT_DISPLAY_ASSOCIATIONS, names))
        return;
    result->association_classes =
        CLPSchema::getInstance()->getAssoc(knownClassOf(result->cim_class));
    if (!names.empty())
        blankIf(result->association_classes, [&names](const std::string& association) {
            return !listed(names, defaultTagOfClass(association));
        });
    result->show_associations = true;
}

void COutputer::select_properties(const Token& token, FilterResult* result, const std::string& ufct,
                                  const std::string& cimclass) {
    const CLPToken& line = parsedLine(token);
    const CLPSchema& schema = *CLPSchema::getInstance();
    for (const std::string& name : schema.getPseudoProperties(ufct))
        result->pseudo_properties.emplace(name, nullptr);
    if (!line.hasOption(OPT_ALL)) {
        for (const std::string& name : schema.getRequiredProperties(ufct))
            result->properties.emplace(name, nullptr);
    } else if (CMPIConstClass* definition = class_of(namespaceOf(cimclass), cimclass)) {
        addClassProperties(definition, result->properties);
    } else {
        VELCLP_LOG_FAILURE("CLP.COutputer.select_properties", "Get Class failed");
    }
    Names names;
    sectionShown(line, OPT_DISPLAY_PROPERTIES, names);
    if (names.empty())
        return;
    keepListed(names, result->properties);
    keepListed(names, result->pseudo_properties);
}

void COutputer::FilterCheckA(Token token, FilterResult* result, std::string association_ufct) {
    VELCLP_TRACE("CLP.COutputer.FilterCheckA");
    result->show_associations = result->association_only = true;
    result->show_targets = result->show_verbs = false;
    result->assoc_class = association_ufct;
    Names& classes = result->association_classes;
    classes = CLPSchema::getInstance()->getAssoc(knownClassOf(result->cim_class));
    const auto named = std::find_if(classes.begin(), classes.end(), [&](const std::string& name) {
        return strcmp_nocase(defaultTagOfClass(name).c_str(), association_ufct.c_str()) == 0;
    });
    if (named == classes.end()) {
        result->show_associations = false;
        return;
    }
    const std::string association = *named;
    blankIf(classes, [&association](const std::string& name) { return name != association; });
    select_properties(token, result, association_ufct, association);
    _dump_FilterResult(result, "CLP.COutputer.FilterCheckA");
}

bool COutputer::CheckSelectorDynamic(Token token, FilterResult* result) {
    constexpr char const* FUNCTION = "CLP.COutputer.CheckSelectorDynamic";
    VELCLP_TRACE(FUNCTION);
    const Names names = parsedLine(token).getPropertyNames(CLPToken::FILTER_PROPERTY);
    if (names.empty())
        return result->display;
    if (!read_class(result)) {
        VELCLP_LOG_FAILURE(FUNCTION, "Get Class failed");
        result->display = false;
        return false;
    }
    result->display = std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        return selector_holds(token, result, name);
    });
    _dump_FilterResult(result, FUNCTION);
    return result->display;
}

bool COutputer::selector_holds(const Token& token, FilterResult* result, const std::string& name) {
    constexpr char const* FUNCTION = "CLP.COutputer.CheckSelectorDynamic";
    OwnedPropValue value;
    const bool ofClass = hasClassProperty(result->cim_class_def, name);
    if (!ofClass) {
        if (!listed(CLPSchema::getInstance()->getPseudoProperties(result->ufct), name))
            return false;
        if (!result->object)
            return true;
        value.reset(getPseudoPropertyValue(result->ufct, name, result->object));
    } else if (!result->object) {
        VELCLP_LOG_FAILURE(FUNCTION, "NULL objpath");
    } else if (!read_instance(result->object, result)) {
        VELCLP_LOG_FAILURE(FUNCTION, "Cannot get instance");
    } else {
        CimStatus status;
        const CMPIData data =
            result->instance->ft->getProperty(result->instance, name.c_str(), status.out());
        if (status.ok())
            value = copyValue(data, result->cim_class_def, name);
        else
            VELCLP_LOG_FAILURE(FUNCTION, "Cannot get property");
    }
    if (!value)
        return false;
    std::string wanted;
    parsedLine(token).getProperty(name, wanted, CLPToken::FILTER_PROPERTY);
    const bool same = selectorText(*value->data) == wanted;
    keepForPrinting(ofClass ? result->properties : result->pseudo_properties, name,
                    std::move(value));
    return same;
}

void COutputer::_dump_FilterResult(FilterResult*, char const*) {}

} // namespace velmora_clp
