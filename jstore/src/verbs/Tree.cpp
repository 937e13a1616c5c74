#include <fmt/format.h>

#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"
#include "work/TreeWalk.h"

namespace jstore {

namespace {

/// Draws each entry after the branches that lead to it.
class TreeDrawing final : public TreeWalk {
public:
    explicit TreeDrawing(Context& context) : TreeWalk(context) {}

    [[nodiscard]] std::size_t folders() const noexcept { return m_folders; }
    [[nodiscard]] std::size_t files() const noexcept { return m_files; }

protected:
    void enter(const Entry& folder, const std::vector<Entry>& /*entries*/) override {
        if (folder.depth == 0) {
            context().reporter().line(printable(folder.location.text()));
        }
    }

    void visit(const Entry& entry) override {
        context().progress().countItem();
        m_last.resize(entry.depth);
        m_last.back() = entry.last;
        ++(entry.isFolder() ? m_folders : m_files);
        context().reporter().line(branches() + entry.nameText());
        context().reporter().done(entry.location, {{"type", wordFor(entry.type)}, {"depth", entry.depth}});
    }

private:
    [[nodiscard]] std::string branches() const {
        std::string text;
        for (std::size_t level = 0; level + 1 < m_last.size(); ++level) {
            text += m_last[level] ? "    " : "│   ";
        }
        return text + (m_last.back() ? "└── " : "├── ");
    }

    /// For each name on the present path, whether it is the last in its folder.
    std::vector<bool> m_last;
    std::size_t m_folders = 0;
    std::size_t m_files = 0;
};

class Tree final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "tree"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Draw folders with everything below them",
                .text =
                    "The last line counts folders and files. The drawing is UTF-8. Symbolic links to folders are\n"
                    "drawn but not followed.",
                .examples = {"jstore tree photos"}};
    }

    void declare(CLI::App& command) override { addArguments(command, "FOLDER...", m_arguments, "Folders to draw"); }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        context.progress().begin("found");
        return forEachLocation(context, locations, [&](const Location& location) {
            TreeDrawing drawing(context);
            const ExitCode code = drawing.run(location);
            context.reporter().line(fmt::format("\n{} folder{}, {} file{}", drawing.folders(),
                                                drawing.folders() == 1 ? "" : "s", drawing.files(),
                                                drawing.files() == 1 ? "" : "s"));
            return code;
        });
    }

private:
    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeTree() { return std::make_unique<Tree>(); }

}  // namespace jstore
