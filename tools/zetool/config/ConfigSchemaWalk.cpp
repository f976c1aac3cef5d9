#include "tools/zetool/config/ConfigSchemaWalk.h"

#include "infr_libs/ErrorHandler/FormattedText.h"
#include "tools/zetool/Words.h"

#include <cstdlib>
#include <new>
#include <string_view>

namespace {

constexpr const char* s_rootName = "ZSystem";

// Keeps what is reported, and goes on.
class KeepingHandler : public ErrorHandler {
public:
    void fatalError(bool, const char* format, ...) override __attribute__((format(printf, 3, 4))) {
        va_list arguments;
        va_start(arguments, format);
        m_messages.push_back(formattedText(format, arguments));
        va_end(arguments);
    }

    void fatalVError(bool, const char* format, va_list arguments) override
        __attribute__((format(printf, 3, 0))) {
        m_messages.push_back(formattedText(format, arguments));
    }

    const std::vector<std::string>& messages() const { return m_messages; }

private:
    std::vector<std::string> m_messages;
};

std::vector<const char*> attributeNames(const XmlNode* node) {
    std::vector<const char*> names;
    for (unsigned i = 0; i < node->numAttributes(); ++i)
        names.push_back(node->getAttribute(i)->getName()->c_str());
    names.push_back(nullptr);
    return names;
}

std::vector<const char*> subNodeNames(const XmlNode* node) {
    std::vector<const char*> names;
    for (unsigned i = 0; i < node->numNodes(); ++i)
        names.push_back(node->getNode(i)->getName()->c_str());
    names.push_back(nullptr);
    return names;
}

// Every element of a tree, without recursion: documents can be deep.
template<typename Body>
void forAll(XmlNode* root, const Body& body) {
    std::vector<XmlNode*> pending{root};
    while (!pending.empty()) {
        XmlNode* const node = pending.back();
        pending.pop_back();
        body(node);
        for (unsigned i = node->numNodes(); i-- > 0;)
            pending.push_back(node->getNode(i));
    }
}

void escape(XmlNode& root) {
    forAll(&root, [](XmlNode* node) {
        const std::string value = withEntities(*node->getValue());
        node->setValue(&value);
        for (unsigned i = 0; i < node->numAttributes(); ++i) {
            XmlAttribute* const attribute = node->getAttribute(i);
            attribute->setValue(withEntities(*attribute->getValue()).c_str());
        }
    });
}

} // namespace

SchemaFault faultOf(const std::string& file, const std::string& message) {
    static constexpr std::string_view s_mark = ": error: ";
    SchemaFault fault;
    fault.message = message.substr(0, message.find_last_not_of('\n') + 1);
    fault.text = fault.message;
    if (!fault.message.starts_with(file + ":"))
        return fault;
    const std::size_t mark = fault.message.find(s_mark, file.size());
    if (mark == std::string::npos)
        return fault;
    fault.text = fault.message.substr(mark + s_mark.size());
    fault.line = static_cast<unsigned>(std::strtoul(fault.message.c_str() + file.size() + 1, nullptr, 10));
    return fault;
}

XmlNode* SchemaDocument::buildDefault() {
    m_root.reset(m_configuration.buildDefaultConfig());
    return m_root.get();
}

XmlNode* SchemaDocument::buildComplete() {
    m_root.reset(m_configuration.buildCompleteConfig());
    return m_root.get();
}

SchemaWalk::SchemaWalk() : m_complete(m_document.buildComplete()) {}

// No deeper than the schema: an element that it doesn't know isn't entered.
void SchemaWalk::visit(XmlNode* root, const Visit& visit) const {
    struct Pair {
        XmlNode* node;
        const XmlNode* model;
    };
    std::vector<Pair> pending{{root, m_complete}};
    while (!pending.empty()) {
        const auto [node, model] = pending.back();
        pending.pop_back();
        visit(node, model);
        for (unsigned i = node->numNodes(); i-- > 0;)
            if (const XmlNode* const known = model->findNode(node->getNode(i)->getName()->c_str()))
                pending.push_back({node->getNode(i), known});
    }
}

std::vector<SchemaFault> SchemaWalk::faults(const std::string& file, XmlNode* root) const {
    if (*root->getName() != s_rootName) {
        const std::string text =
            std::string("the root must be '") + s_rootName + "', not '" + *root->getName() + "'";
        return {
            {root->getLineNum(), file + ":" + std::to_string(root->getLineNum()) + ": error: " + text, text}};
    }
    KeepingHandler handler;
    ZelmUtils* const utils = root->getZelmUtils();
    ErrorHandler* const earlier = utils->errorHandler;
    utils->errorHandler = &handler;
    visit(root, [](XmlNode* node, const XmlNode* model) {
        node->checkAttributes(attributeNames(model).data());
        node->checkSubNodes(subNodeNames(model).data());
    });
    utils->errorHandler = earlier;

    std::vector<SchemaFault> faults;
    for (const std::string& message : handler.messages())
        faults.push_back(faultOf(file, message));
    return faults;
}

std::string textOf(const std::function<void(FILE*)>& body) {
    char* bytes = nullptr;
    std::size_t size = 0;
    FILE* const stream = open_memstream(&bytes, &size);
    if (!stream)
        throw std::bad_alloc();
    body(stream);
    std::fclose(stream);
    std::string text(bytes, size);
    std::free(bytes);
    return text;
}

std::string documentText(XmlNode& root) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + elementText(root);
}

std::string elementText(XmlNode& root) {
    escape(root);
    return textOf([&](FILE* file) { root.print(file, 0, true); });
}
