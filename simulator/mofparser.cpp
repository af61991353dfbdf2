#include "simulator/mof.h"

#include "simulator/moflexer.h"
#include "simulator/names.h"

namespace velclp_sim {

namespace {

using Kind = MofToken::Kind;

class MofParser {
public:
    MofParser(std::string_view text, const std::string& file) : lexer_(text, file) { advance(); }

    MofDocument parse() {
        MofDocument document;
        while (current_.kind != Kind::end) {
            document.push_back(item());
        }
        return document;
    }

private:
    void advance() { current_ = lexer_.next(); }

    bool isSymbol(char c) const { return current_.kind == Kind::symbol && current_.text[0] == c; }
    bool isWord(std::string_view word) const {
        return current_.kind == Kind::word && sameName(current_.text, word);
    }

    [[noreturn]] void fail(const std::string& wanted) const {
        const std::string found =
            current_.kind == Kind::end ? "the end of the file" : "'" + current_.text + "'";
        throw MofError(current_.place, "expected " + wanted + ", found " + found);
    }

    bool accept(char c) {
        if (!isSymbol(c)) {
            return false;
        }
        advance();
        return true;
    }

    void expect(char c) {
        if (!accept(c)) {
            fail(std::string("'") + c + "'");
        }
    }

    std::string take(Kind kind, const std::string& wanted) {
        if (current_.kind != kind) {
            fail(wanted);
        }
        std::string text = std::move(current_.text);
        advance();
        return text;
    }

    std::string name(const std::string& wanted = "a name") { return take(Kind::word, wanted); }

    MofItem item() {
        if (current_.kind == Kind::pragma) {
            return pragma();
        }
        std::vector<MofQualifier> qualifiers;
        if (isSymbol('[')) {
            qualifiers = qualifierList();
        } else if (isWord("qualifier")) {
            return qualifierType();
        }
        if (isWord("class")) {
            return classDeclaration(std::move(qualifiers));
        }
        if (isWord("instance")) {
            return instanceDeclaration();
        }
        fail("'class', 'instance', 'qualifier' or '#pragma'");
    }

    MofPragma pragma() {
        if (!sameName(current_.text, "pragma")) {
            fail("'#pragma'");
        }
        MofPragma result;
        result.place = current_.place;
        advance();
        result.name = name();
        expect('(');
        result.argument = string();
        expect(')');
        return result;
    }

    /// One string, made of all the literals that stand side by side.
    std::string string() {
        std::string text = take(Kind::string, "a string");
        while (current_.kind == Kind::string) {
            text += take(Kind::string, "a string");
        }
        return text;
    }

    CimType type() {
        const auto known = typeFromName(current_.text);
        if (current_.kind != Kind::word || !known || *known == CimType::reference) {
            fail("a type");
        }
        advance();
        return *known;
    }

    /// "[]" or "[n]" behind a name.
    bool arrayMark(unsigned* size) {
        if (!accept('[')) {
            return false;
        }
        if (current_.kind == Kind::integer) {
            *size = static_cast<unsigned>(current_.number.toUnsigned());
            advance();
        }
        expect(']');
        return true;
    }

    std::vector<std::string> wordList() {
        std::vector<std::string> words;
        expect('(');
        do {
            words.push_back(name());
        } while (accept(','));
        expect(')');
        return words;
    }

    MofQualifierType qualifierType() {
        MofQualifierType result;
        result.place = current_.place;
        advance();
        result.name = name();
        expect(':');
        result.type = type();
        unsigned size = 0;
        result.isArray = arrayMark(&size);
        if (accept('=')) {
            result.value = value();
        }
        expect(',');
        if (!isWord("scope")) {
            fail("'Scope'");
        }
        advance();
        result.scopes = wordList();
        if (accept(',')) {
            if (!isWord("flavor")) {
                fail("'Flavor'");
            }
            advance();
            result.flavors = wordList();
        }
        expect(';');
        return result;
    }

    std::vector<MofQualifier> qualifierList() {
        std::vector<MofQualifier> list;
        expect('[');
        do {
            list.push_back(qualifier());
        } while (accept(','));
        expect(']');
        return list;
    }

    std::vector<MofQualifier> optionalQualifiers() {
        return isSymbol('[') ? qualifierList() : std::vector<MofQualifier>();
    }

    MofQualifier qualifier() {
        MofQualifier result;
        result.place = current_.place;
        result.name = name("a qualifier's name");
        if (accept('(')) {
            result.value = value();
            expect(')');
        } else if (isSymbol('{')) {
            result.value = value();
        }
        if (accept(':')) {
            do {
                result.flavors.push_back(name("a flavor"));
            } while (current_.kind == Kind::word);
        }
        return result;
    }

    MofClass classDeclaration(std::vector<MofQualifier> qualifiers) {
        MofClass result;
        advance();
        result.place = current_.place;
        result.qualifiers = std::move(qualifiers);
        result.name = name("a class name");
        if (isWord("as")) {
            advance();
            take(Kind::alias, "an alias");
        }
        if (accept(':')) {
            result.superName = name("a superclass");
        }
        expect('{');
        while (!isSymbol('}')) {
            result.features.push_back(feature());
            expect(';');
        }
        expect('}');
        expect(';');
        return result;
    }

    /// What properties, references, methods and parameters begin with.
    MofFeature featureHead() {
        MofFeature result;
        result.qualifiers = optionalQualifiers();
        if (current_.kind == Kind::word && typeFromName(current_.text)) {
            result.type = type();
        } else {
            result.referenceClass = name("a type or a class name");
            result.type = CimType::reference;
            if (!isWord("ref")) {
                fail("'REF'");
            }
            advance();
        }
        result.place = current_.place;
        result.name = name();
        return result;
    }

    MofFeature feature() {
        MofFeature result = featureHead();
        if (accept('(')) {
            result.isMethod = true;
            while (!isSymbol(')')) {
                result.parameters.push_back(featureHead());
                result.parameters.back().isArray = arrayMark(&result.parameters.back().arraySize);
                if (!isSymbol(')')) {
                    expect(',');
                }
            }
            expect(')');
            return result;
        }
        result.isArray = arrayMark(&result.arraySize);
        if (accept('=')) {
            result.value = value();
        }
        return result;
    }

    MofInstance instanceDeclaration() {
        MofInstance result;
        result.place = current_.place;
        advance();
        if (!isWord("of")) {
            fail("'of'");
        }
        advance();
        result.className = name("a class name");
        if (isWord("as")) {
            advance();
            result.alias = take(Kind::alias, "an alias");
        }
        expect('{');
        while (!isSymbol('}')) {
            optionalQualifiers();
            MofAssignment assignment;
            assignment.place = current_.place;
            assignment.name = name("a property's name");
            expect('=');
            assignment.value = value();
            result.assignments.push_back(std::move(assignment));
            expect(';');
        }
        expect('}');
        expect(';');
        return result;
    }

    MofValue value() {
        if (!isSymbol('{')) {
            return scalar();
        }
        MofValue result;
        result.place = current_.place;
        result.isArray = true;
        advance();
        if (!isSymbol('}')) {
            do {
                result.elements.push_back(scalar());
            } while (accept(','));
        }
        expect('}');
        return result;
    }

    MofValue scalar() {
        MofValue result;
        result.place = current_.place;
        switch (current_.kind) {
        case Kind::string:
            result.literal = string();
            return result;
        case Kind::character:
            result.character = true;
            result.literal = take(Kind::character, "a character");
            return result;
        case Kind::alias:
            result.alias = take(Kind::alias, "an alias");
            return result;
        case Kind::integer:
        case Kind::real:
            result.literal = current_.number;
            advance();
            return result;
        default:
            break;
        }
        if (isWord("true") || isWord("false")) {
            result.literal = isWord("true");
        } else if (!isWord("null")) {
            fail("a value");
        }
        advance();
        return result;
    }

    MofLexer lexer_;
    MofToken current_;
};

} // namespace

MofDocument parseMof(std::string_view text, const std::string& file) {
    return MofParser(text, file).parse();
}

} // namespace velclp_sim
