// The qualifier types that every CIM server brings along, so that a model may leave them out.
#include "simulator/mofcompiler.h"

namespace velclp_sim {

namespace {

constexpr const char* standardText = R"mof(
Qualifier Abstract : boolean = false, Scope(class, association, indication), Flavor(Restricted);
Qualifier Aggregate : boolean = false, Scope(reference), Flavor(DisableOverride, ToSubclass);
Qualifier Aggregation : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Alias : string = null, Scope(property, reference, method), Flavor(Translatable);
Qualifier ArrayType : string = "Bag", Scope(property, parameter), Flavor(DisableOverride, ToSubclass);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier BitMap : string[] = null, Scope(property, method, parameter);
Qualifier BitValues : string[] = null, Scope(property, method, parameter), Flavor(Translatable);
Qualifier ClassConstraint : string[] = null, Scope(class, association, indication);
Qualifier Composition : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Counter : boolean = false, Scope(property, method, parameter);
Qualifier Deprecated : string[] = null, Scope(any), Flavor(Restricted);
Qualifier Description : string = null, Scope(any), Flavor(Translatable);
Qualifier DisplayName : string = null, Scope(any), Flavor(Translatable);
Qualifier DN : boolean = false, Scope(property, method, parameter), Flavor(DisableOverride, ToSubclass);
Qualifier EmbeddedInstance : string = null, Scope(property, method, parameter);
Qualifier EmbeddedObject : boolean = false, Scope(property, method, parameter),
    Flavor(DisableOverride, ToSubclass);
Qualifier Exception : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
Qualifier Experimental : boolean = false, Scope(any), Flavor(Restricted);
Qualifier Gauge : boolean = false, Scope(property, method, parameter);
Qualifier In : boolean = true, Scope(parameter), Flavor(DisableOverride, ToSubclass);
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier MappingStrings : string[] = null, Scope(any);
Qualifier Max : uint32 = null, Scope(reference);
Qualifier MaxLen : uint32 = null, Scope(property, method, parameter);
Qualifier MaxValue : sint64 = null, Scope(property, method, parameter);
Qualifier MethodConstraint : string[] = null, Scope(method);
Qualifier Min : uint32 = 0, Scope(reference);
Qualifier MinLen : uint32 = 0, Scope(property, method, parameter);
Qualifier MinValue : sint64 = null, Scope(property, method, parameter);
Qualifier ModelCorrespondence : string[] = null, Scope(any);
Qualifier NonLocal : string = null, Scope(reference);
Qualifier NullValue : string = null, Scope(property), Flavor(DisableOverride, ToSubclass);
Qualifier OctetString : boolean = false, Scope(property, method, parameter),
    Flavor(DisableOverride, ToSubclass);
Qualifier Out : boolean = false, Scope(parameter), Flavor(DisableOverride, ToSubclass);
Qualifier Override : string = null, Scope(property, reference, method), Flavor(Restricted);
Qualifier Propagated : string = null, Scope(property), Flavor(DisableOverride, ToSubclass);
Qualifier PropertyConstraint : string[] = null, Scope(property, reference);
Qualifier PUnit : string = null, Scope(property, method, parameter);
Qualifier Read : boolean = true, Scope(property);
Qualifier Required : boolean = false, Scope(property, reference, method, parameter),
    Flavor(DisableOverride, ToSubclass);
Qualifier Revision : string = null, Scope(class, association, indication);
Qualifier Schema : string = null, Scope(property, method);
Qualifier Static : boolean = false, Scope(property, method), Flavor(DisableOverride, ToSubclass);
Qualifier Terminal : boolean = false, Scope(class, association, indication);
Qualifier UMLPackagePath : string = null, Scope(class, association, indication);
Qualifier Units : string = null, Scope(property, method, parameter), Flavor(Translatable);
Qualifier ValueMap : string[] = null, Scope(property, method, parameter);
Qualifier Values : string[] = null, Scope(property, method, parameter), Flavor(Translatable);
Qualifier Version : string = null, Scope(class, association, indication), Flavor(Restricted, Translatable);
Qualifier Weak : boolean = false, Scope(reference), Flavor(DisableOverride, ToSubclass);
Qualifier Write : boolean = false, Scope(property);
)mof";

constexpr const char* space = "standard";

std::unique_ptr<Repository> loadStandardTypes() {
    auto types = std::make_unique<Repository>();
    MofCompiler compiler(*types);
    for (const MofItem& item : parseMof(standardText, "standard qualifiers")) {
        compiler.declare(std::get<MofQualifierType>(item), space);
    }
    return types;
}

} // namespace

const QualifierType* standardQualifierType(const std::string& name) {
    static const std::unique_ptr<Repository> types = loadStandardTypes();
    return types->findQualifierType(space, name);
}

} // namespace velclp_sim
