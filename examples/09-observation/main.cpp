// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Being told of changes: of a property, through a related object, and on a queue.
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>

#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace {

class Author final : public kw::NSObject {
public:
    explicit Author(std::string name)
        : m_name(std::move(name)) { }
    const std::string& name() const { return m_name; }
    void setName(std::string name) { kw::setAndNotify(*this, nameKey, m_name, std::move(name)); }

    static kw::Class& classObject() {
        static kw::Class object("Author", kw::NSObject::classObject(), {},
            {kw::property("name", &Author::name, &Author::setName)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

private:
    static inline const kw::SEL nameKey {"name"};
    std::string m_name;
};

class Document final : public kw::NSObject {
public:
    const std::shared_ptr<Author>& author() const { return m_author; }
    void setAuthor(std::shared_ptr<Author> author) {
        kw::setAndNotify(*this, authorKey, m_author, std::move(author));
    }

    static kw::Class& classObject() {
        static kw::Class object("Document", kw::NSObject::classObject(), {},
            {kw::property("author", &Document::author, &Document::setAuthor)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

private:
    static inline const kw::SEL authorKey {"author"};
    std::shared_ptr<Author> m_author;
};

} // namespace

int main() {
    const auto ada = std::make_shared<Author>("Ada");
    const auto document = std::make_shared<Document>();
    document->setAuthor(ada);

    std::cout << "observed at once:\n";
    const std::string token = kw::addObserverForKeyPath(
        *document, "author.name", [](kw::NSObject& object, const kw::NSKeyValueChange&) {
            std::cout << "  the author is "
                      << kw::valueForKeyPath<std::string>(object, "author.name") << '\n';
        });
    ada->setName("Ada Lovelace");
    document->setAuthor(std::make_shared<Author>("Grace"));
    ada->setName("nobody is told of this: the document has another author");
    kw::setValueForKeyPath(*document, "Grace Hopper", "author.name");
    kw::removeObserverWithBlockToken(*document, token);
    document->author()->setName("nobody is told of this either");

    std::cout << "observed on a queue:\n";
    const auto queue = std::make_shared<kw::NSOperationQueue>();
    queue->setMaxConcurrentOperationCount(1); // one after the other
    const auto mainThread = std::this_thread::get_id();
    const std::string queued = kw::addObserverForKeyPath(
        *document, "author", queue, [mainThread](kw::NSObject&, const kw::NSKeyValueChange&) {
            const bool isElsewhere = std::this_thread::get_id() != mainThread;
            std::cout << "  another author, told on " << (isElsewhere ? "another" : "the main")
                      << " thread\n";
        });
    document->setAuthor(ada);
    document->setAuthor(nullptr);
    queue->waitUntilAllOperationsAreFinished();
    kw::removeObserverWithBlockToken(*document, queued);
    return 0;
}
