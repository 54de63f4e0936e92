#include "LineAnswers.h"

#include <algorithm>

#include "JsonText.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;

using nuv::zero::ModelElement;
using nuv::zero::traversal::Link;

namespace {

std::string joined(const AttributeLabel& label) {
    std::string text;
    for (const std::string& each : label.values) text += (text.empty() ? "" : ", ") + each;
    return text;
}

std::string inJson(const AttributeLabel& label) {
    std::string list;
    for (const std::string& each : label.values) {
        list += (list.empty() ? "" : ",") + (label.isNumber ? each : model_walk::inJson(each));
    }
    return label.isList ? "[" + list + "]" : list;
}

std::string member(std::string_view name, const std::string& value) {
    return model_walk::inJson(name) + ":" + value;
}

std::string textMember(std::string_view name, std::string_view value) {
    return member(name, model_walk::inJson(value));
}

}  // namespace

std::string shown(const Terminal& terminal, const Labels& labels, const ModelElement& element) {
    const std::string text = escaped(labels.element(element));
    const std::size_t quote = std::min(text.find('\''), text.size());
    return terminal.in(Terminal::Part::Class, text.substr(0, quote)) +
           terminal.in(Terminal::Part::Name, text.substr(quote));
}

std::string shownAttributes(const Labels& labels, const ModelElement& element) {
    std::string text;
    for (const AttributeLabel& each : labels.attributes(element)) {
        if (!each.values.empty()) text += '\t' + escaped(each.name + "=" + joined(each));
    }
    return text;
}

void TextAnswers::line(const ModelElement& subject, const std::string& text,
                       const std::string& note) {
    std::string line;
    if (addresses_ == Addresses::Shown) {
        line = terminal_.in(Terminal::Part::Address, labels_.address(subject)) + '\t';
    }
    line += text + shownAttributes(labels_, subject);
    if (!note.empty()) line += '\t' + escaped(note);
    sink_.line(line);
}

void TextAnswers::onElement(const ElementAnswer& answer) {
    line(answer.element, shown(terminal_, labels_, answer.element), {});
}

void TextAnswers::onLink(const LinkAnswer& answer) {
    const Link& link = answer.link;
    const std::string distance =
        answer.showsDistance ? std::to_string(answer.depth) + '\t' : std::string();
    if (!link.getProperty() && addresses_ == Addresses::Shown) {
        return line(answer.subject(), distance + shown(terminal_, labels_, link.getTarget()),
                    answer.note);
    }
    if (!terminal_.isColoured()) {
        return line(answer.subject(), distance + escaped(labels_.link(link)), answer.note);
    }
    std::string property = escaped(Labels::property(link));
    if (link.getProperty()) property = "[" + property + "]";
    line(answer.subject(),
         distance + shown(terminal_, labels_, link.getSource()) + "-" +
             terminal_.in(Terminal::Part::Property, property) + "-" +
             shown(terminal_, labels_, link.getTarget()),
         answer.note);
}

void TextAnswers::onFact(const FactAnswer& answer) {
    if (title_ != answer.title) {
        title_ = answer.title;
        sink_.line(terminal_.in(Terminal::Part::Title, escaped(title_)));
    }
    sink_.line(answer.line);
}

std::string TsvAnswers::attributes(const ModelElement& element) const {
    std::string text;
    for (const AttributeLabel& each : labels_.attributes(element)) {
        text += '\t' + escaped(joined(each));
    }
    return text;
}

void TsvAnswers::onElement(const ElementAnswer& answer) {
    sink_.line(labels_.address(answer.element) + '\t' + escaped(labels_.className(answer.element)) +
               '\t' + escaped(labels_.name(answer.element)) + attributes(answer.element));
}

void TsvAnswers::onLink(const LinkAnswer& answer) {
    const Link& link = answer.link;
    std::string line = labels_.address(link.getSource()) + '\t' + escaped(Labels::property(link)) +
                       '\t' + labels_.address(link.getTarget()) + '\t' +
                       (link.shouldCascade() ? "true" : "false");
    if (addresses_ == Addresses::Shown) {
        line = labels_.address(answer.subject()) + '\t' + line + '\t' +
               std::to_string(answer.depth) + attributes(answer.subject());
        if (!answer.note.empty()) line += '\t' + escaped(answer.note);
    }
    sink_.line(line);
}

void TsvAnswers::onFact(const FactAnswer& answer) {
    std::string line(answer.kind);
    for (const FactAnswer::Field& field : answer.fields) line += '\t' + escaped(field.text);
    sink_.line(line);
}

std::string JsonAnswers::about(const ModelElement& element) const {
    std::string text = textMember("address", labels_.address(element)) + "," +
                       textMember("class", labels_.className(element)) + "," +
                       textMember("name", labels_.name(element));
    std::string attributes;
    for (const AttributeLabel& each : labels_.attributes(element)) {
        if (each.values.empty() && !each.isList) continue;
        attributes += (attributes.empty() ? "" : ",") + member(each.name, inJson(each));
    }
    return attributes.empty() ? text : text + "," + member("attributes", "{" + attributes + "}");
}

void JsonAnswers::onElement(const ElementAnswer& answer) {
    sink_.line("{" + about(answer.element) + "}");
}

void JsonAnswers::onLink(const LinkAnswer& answer) {
    const Link& link = answer.link;
    std::string line = "{" + about(answer.subject());
    if (link.getProperty()) {
        line += "," + textMember("source", labels_.address(link.getSource())) + "," +
                textMember("property", Labels::property(link));
    }
    line += "," + textMember("target", labels_.address(link.getTarget())) + "," +
            member("cascade", link.shouldCascade() ? "true" : "false") + "," +
            member("depth", std::to_string(answer.depth));
    if (!answer.note.empty()) line += "," + textMember("note", answer.note);
    sink_.line(line + "}");
}

void JsonAnswers::onFact(const FactAnswer& answer) {
    std::string line = "{" + textMember("kind", answer.kind);
    for (const FactAnswer::Field& field : answer.fields) {
        line += "," + (field.isNumber ? member(field.name, field.text)
                                      : textMember(field.name, field.text));
    }
    sink_.line(line + "}");
}

}  // namespace model_walk
