#include "tools/zetool/config/ConfigDocuments.h"

#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/config/ConfigSchemaWalk.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"

namespace {

int writeResult(const Invocation& invocation, const std::string& text) {
    OutputFile output = resultFile(invocation);
    output.write(text);
    output.close();
    return s_fine;
}

// Whether a text stays what it is between double quotes. The parser knows no entity for them; one behind a
// backslash is part of the value.
bool canBeQuoted(const std::string& text) {
    bool isProtected = false;
    for (const char c : text) {
        if (c == '"' && !isProtected)
            return false;
        isProtected = c == '\\' && !isProtected;
    }
    return !isProtected;
}

// Whether the document can be written; a message for each value that can't.
bool canBeWritten(const std::string& file, const SchemaWalk& walk, XmlNode* root) {
    bool allCan = true;
    walk.visit(root, [&](XmlNode* node, const XmlNode*) {
        for (unsigned i = 0; i < node->numAttributes(); ++i) {
            const XmlAttribute* const attribute = node->getAttribute(i);
            if (canBeQuoted(*attribute->getValue()))
                continue;
            printMessage(file, node->getLineNum(),
                         "the value of '" + *attribute->getName() + "' in node '" + *node->getName() +
                             "' holds a double quote, which can't be written");
            allCan = false;
        }
    });
    return allCan;
}

void addDefaults(const SchemaWalk& walk, XmlNode* root) {
    walk.visit(root, [](XmlNode* node, const XmlNode* model) {
        for (unsigned i = 0; i < model->numAttributes(); ++i) {
            const XmlAttribute* const attribute = model->getAttribute(i);
            if (!node->findAttribute(attribute->getName()->c_str()))
                node->addAttribute(new XmlAttribute(*attribute));
        }
    });
}

} // namespace

int configDefault(const Invocation& invocation) {
    SchemaDocument document;
    return writeResult(invocation, documentText(*document.buildDefault()));
}

int configTemplate(const Invocation& invocation) {
    SchemaDocument document;
    return writeResult(invocation,
                       textOf([&](FILE* file) { document.configuration().displayDefaultConfig(file); }));
}

int configComplete(const Invocation& invocation) {
    if (!invocation.has("FILE")) {
        SchemaDocument document;
        return writeResult(invocation, documentText(*document.buildComplete()));
    }
    const std::string& path = invocation.value("FILE");
    const std::string file = shownName(path);
    const std::unique_ptr<Document> document = loadDocument(file, readWhole(path));
    if (!document)
        return s_foundWrong;
    const SchemaWalk walk;
    const std::vector<SchemaFault> faults = walk.faults(file, document->root());
    for (const SchemaFault& fault : faults)
        printMessage(fault.message);
    if (!faults.empty() || !canBeWritten(file, walk, document->root()))
        return s_foundWrong;
    addDefaults(walk, document->root());
    return writeResult(invocation, documentText(*document->root()));
}
