#include "tools/zetool/xml/XmlShow.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/xml/XmlTree.h"

namespace {

Entities entitiesOf(const Invocation& invocation) {
    return invocation.has("raw-entities") ? Entities::Raw : Entities::Replaced;
}

// A document that can't be opened is a failure like any other here, with the parser's own message.
int showJson(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    const Entities entities = entitiesOf(invocation);
    std::unique_ptr<Document> document;
    const auto failure = failureOf(file, [&] {
        document = file == "-" ? std::make_unique<Document>(file, readWhole(file), entities)
                               : std::make_unique<Document>(file, entities);
    });
    OutputFile output = resultFile(invocation);
    output.write("{\n  \"type\": \"xml\",\n  \"version\": 1,\n");
    if (failure) {
        output.write("  \"error\": " + jsonLine(jsonText(failure->error)));
    } else {
        output.write("  \"tree\": ");
        writeTreeJson(output, *document->root());
    }
    output.write("\n}\n");
    output.close();
    return failure ? s_foundWrong : s_fine;
}

} // namespace

int xmlShow(const Invocation& invocation) {
    if (invocation.has("json"))
        return showJson(invocation);
    const std::string& file = invocation.value("FILE");
    const Entities entities = entitiesOf(invocation);
    const std::unique_ptr<Document> document = loadDocument(shownName(file), readWhole(file), entities);
    if (!document)
        return s_foundWrong;
    OutputFile output = resultFile(invocation);
    writeTreeText(output, *document->root(), entities == Entities::Replaced);
    output.close();
    return s_fine;
}
