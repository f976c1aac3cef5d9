#include "tools/zetool/config/ConfigGet.h"

#include "infr_libs/XmlParser/XmlNode.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/config/ConfigPath.h"
#include "tools/zetool/config/ConfigSchemaWalk.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"

#include <memory>
#include <optional>

namespace {

// What a path leads to.
struct Answer {
    const ConfigPath* path;
    XmlNode* node = nullptr;          // null: nothing found
    std::optional<std::string> value; // of the attribute asked for
    bool isDefault = false;           // whether the value is the schema's, not the document's

    bool isFound() const { return node && (path->attribute().empty() || value); }
};

Answer answerTo(const ConfigPath& path, Configuration& configuration, XmlNode* root, bool withDefaults) {
    Answer answer{&path, path.find(configuration, root), {}, false};
    if (!answer.node || path.attribute().empty())
        return answer;
    const char* const name = path.attribute().c_str();
    if (const XmlAttribute* const attribute = answer.node->findAttribute(name)) {
        answer.value = *attribute->getValue();
    } else if (withDefaults) {
        if (const char* const value = configuration.getAttributeValue(answer.node->getName()->c_str(), name))
            answer.value = value;
        answer.isDefault = answer.value.has_value();
    }
    return answer;
}

Json answerJson(const Answer& answer) {
    Json object = Json::object();
    object["path"] = jsonText(answer.path->text());
    object["isFound"] = answer.isFound();
    object["element"] = nullptr;
    object["line"] = nullptr;
    object["value"] = answer.value ? Json(jsonText(*answer.value)) : Json();
    object["isDefault"] = answer.isDefault;
    Json& attributes = object["attributes"] = Json::array();
    if (!answer.node)
        return object;
    object["element"] = jsonText(*answer.node->getName());
    object["line"] = answer.node->getLineNum();
    for (unsigned i = 0; i < answer.node->numAttributes(); ++i) {
        const XmlAttribute* const attribute = answer.node->getAttribute(i);
        Json row = Json::object();
        row["name"] = jsonText(*attribute->getName());
        row["value"] = jsonText(*attribute->getValue());
        attributes.push_back(std::move(row));
    }
    return object;
}

std::string answerText(const Answer& answer) {
    if (answer.value)
        return *answer.value + "\n";
    XmlNode copy(*answer.node); // writing escapes the tree
    return elementText(copy);
}

} // namespace

int configGet(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    const std::string file = shownName(path);
    std::vector<ConfigPath> paths;
    for (const std::string& text : invocation.values("PATH"))
        paths.emplace_back(text);
    const std::unique_ptr<Document> document = loadDocument(file, readWhole(path));
    if (!document)
        return s_foundWrong;

    Configuration configuration(document->root()->getZelmUtils());
    bool allFound = true;
    std::vector<Answer> answers;
    for (const ConfigPath& wanted : paths) {
        try {
            answers.push_back(answerTo(wanted, configuration, document->root(), invocation.has("default")));
        } catch (const std::string& error) { // an attribute that the document has twice
            printLines(error);
            answers.push_back({&wanted, nullptr, {}, false});
            allFound = false;
            continue;
        }
        if (!answers.back().isFound()) {
            printMessage(file, "there is no '" + wanted.text() + "'");
            allFound = false;
        }
    }

    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        Json object = jsonObject("configGet", 1);
        Json& list = object["results"] = Json::array();
        for (const Answer& answer : answers)
            list.push_back(answerJson(answer));
        writeJson(output, object);
    } else {
        for (const Answer& answer : answers)
            if (answer.isFound())
                output.write(answerText(answer));
    }
    output.close();
    return allFound ? s_fine : s_foundWrong;
}
