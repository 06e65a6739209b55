// The project's text read the way the worker reads it, every line the reading passes over reported.
#include "CheckProject.h"

#include "driver/ReadGridFile.h"
#include "generator/readFileC.h"

namespace Dorva {

namespace {

const char* const kStateNames[SPEC_STATES] = {
    "outside any section", "in the Options section", "in the Body Definitions section",
    "in a body record",    "in the X grid specs",    "in the Y grid specs",
    "in the Z grid specs", "in a grid spec record"};

std::string Trimmed(const std::string& s) {
    const std::string::size_type first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) return std::string();
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> KeysOf(int intState) {
    std::vector<std::string> keys;
    for (const SpecKeyword* k = spec_keywords(intState); k->key; ++k)
        keys.push_back(Trimmed(k->key));
    return keys;
}

// The state whose table holds a keyword that line holds, other than intState; -1 if none.
int OtherStateOf(int intState, const std::string& line) {
    for (int s = 0; s < SPEC_STATES; ++s) {
        const char* value;
        if (s != intState && s != SPEC_TOP && spec_keyword_of(s, line.c_str(), &value)) return s;
    }
    return -1;
}

struct TextWalk {
    const std::string& strProject;
    CheckResult& result;
    ProjectLayout layout;
    int intState = SPEC_TOP;
    int intSection = SPEC_XSECTION;
    int aintOpened[SPEC_STATES] = {};  // line that entered each state
    // The body record in progress has its type.
    bool blnType = false;
    bool blnSkipping = false;  // after a misspelt section header

    void Error(int intLine, const std::string& text) {
        result.Add(strProject, intLine, true, text);
    }

    void PassedOver(int intLine, const std::string& original) {
        const std::string text = Trimmed(original);
        if (text.empty() || text[0] == '#' || ProjectKeywordOf(original) >= 0) return;
        // The word up to its colon is what a misspelling garbles; the value behind is free.
        const std::string::size_type colon = text.find(':');
        const std::string word = colon == std::string::npos ? text : text.substr(0, colon + 1);
        const std::string near = NearestKeyword(word, KeysOf(intState));
        std::string message = "'" + text + "' is passed over " + kStateNames[intState];
        if (!near.empty()) {
            message += "; did you mean '" + near + "'?";
        } else {
            const int other = OtherStateOf(intState, original);
            if (other >= 0) message += std::string(": it belongs ") + kStateNames[other];
        }
        if (blnSkipping) return;
        // After a misspelt section header or end keyword the run passes over what follows up to
        // the next keyword it knows there; those lines need no word of their own.
        if (intState == SPEC_TOP && !near.empty()) {
            blnSkipping = true;
            message += " Everything up to the next section is passed over with it.";
        } else if (!near.empty() && near == Trimmed(spec_keywords(intState)[0].key)) {
            blnSkipping = true;
            message +=
                " The section goes on, and what follows is passed over up to a line it reads.";
        }
        Error(intLine, message);
    }

    void Keyword(int intLine, const SpecKeyword& k, const char* value) {
        const std::string key = k.key;
        blnSkipping = false;
        if (intState == SPEC_BODY) {
            if (key == "type: ") TypeWord(intLine, value);
            if (key == "#") EndBody();
        }
        if (intState == SPEC_OPTIONS && key == "Layer File: ") {
            layout.strLayerFile = value;
            layout.intLayerLine = intLine;
        }
        if (intState == SPEC_TOP && k.next >= SPEC_XSECTION && k.next <= SPEC_ZSECTION) {
            intSection = k.next;
            layout.aintSectionLines[k.next - SPEC_XSECTION] = intLine;
        }
        if (k.next == SPEC_BODY) blnType = false;
        if (k.next == SPEC_BACK_TO_SECTION) {
            intState = intSection;
        } else if (k.next != SPEC_STAY) {
            // A record's end leads back into its section, which stays opened where it was.
            if (intState == SPEC_TOP || k.next == SPEC_BODY || k.next == SPEC_GDSPEC)
                aintOpened[k.next] = intLine;
            intState = k.next;
        }
    }

    // The generator's value after the driver's rewrite: a surface type reads as X cut planes.
    void TypeWord(int intLine, const char* value) {
        blnType = true;
        for (int i = 0; i < 6; ++i) {
            if (std::string(value).find(spec_body_type_words[i]) != std::string::npos) return;
        }
        std::vector<std::string> words(spec_body_type_words, spec_body_type_words + 6);
        words.insert(words.end(), g_astrBodyTypeWords, g_astrBodyTypeWords + BODY_NONE);
        const std::string near = NearestKeyword(Trimmed(value), words);
        Error(intLine, "unknown body type '" + Trimmed(value) + "': the run ignores this body" +
                           (near.empty() ? std::string() : "; did you mean '" + near + "'?"));
    }

    void EndBody() {
        // A body the driver reads always reaches the generator with its points file; one without a
        // type the driver doesn't see, and the generator keeps it without a use.
        if (!blnType)
            Error(aintOpened[SPEC_BODY], "body without a \"type: \" line: the run ignores it");
    }

    void Unclosed() {
        // Each state's first keyword is the one that closes it.
        for (int s = intState; s != SPEC_TOP;) {
            Error(aintOpened[s], std::string("never closed: '") + spec_keywords(s)[0].key +
                                     "' expected before the end of the project");
            s = s == SPEC_BODY ? SPEC_BODIES : s == SPEC_GDSPEC ? intSection : SPEC_TOP;
        }
    }
};

}  // namespace

ProjectLayout CheckProjectText(const std::string& strProject,
                               const std::vector<std::string>& vecProject,
                               const std::vector<std::string>& vecRewrite, CheckResult& result) {
    TextWalk walk{strProject, result, {}};
    for (std::size_t i = 0; i < vecProject.size(); ++i) {
        const int line = static_cast<int>(i) + 1;
        if (i >= vecRewrite.size()) {
            // The driver ended its copy here: a body's second or third line was not what it reads.
            const bool blnSecond = i > 0 && ProjectKeywordOf(vecProject[i - 1]) == PROJECT_TYPE &&
                                   KindOfTypeLine(vecProject[i - 1]) != BODY_NONE;
            walk.Error(line, std::string("a body's ") + (blnSecond ? "second" : "third") +
                                 " line must hold \"" +
                                 (blnSecond ? g_strPointsFileKey : g_strUsedInSolverKey) +
                                 "\": the run stops reading the project here");
            walk.layout.blnTruncated = true;
            break;
        }
        const char* value;
        const SpecKeyword* k = spec_keyword_of(walk.intState, vecRewrite[i].c_str(), &value);
        if (k)
            walk.Keyword(line, *k, value);
        else
            walk.PassedOver(line, vecProject[i]);
        if (ProjectKeywordOf(vecProject[i]) == PROJECT_TYPE && i + 1 < vecRewrite.size() &&
            KindOfTypeLine(vecProject[i]) != BODY_NONE)
            walk.layout.vecBodyPointsLines.push_back(line + 1);
    }
    if (!walk.layout.blnTruncated) walk.Unclosed();
    for (int a = 0; a < 3 && !walk.layout.blnTruncated; ++a)
        if (!walk.layout.aintSectionLines[a])
            walk.Error(0, std::string("the ") + "XYZ"[a] + " grid line gets no grid specs: no '" +
                              spec_keywords(SPEC_TOP)[2 + a].key + "' section is read");
    return walk.layout;
}

}  // namespace Dorva
