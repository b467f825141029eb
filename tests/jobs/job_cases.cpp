// Runs the job cases: every tests/jobs/<folder>/<case>.qxs through the program, compared with what
// stands beside it in <case>.expected: exit status, standard output, standard error and trace.
//
//   job_tests [--update] [FILTER]    FILTER: run the cases whose name holds it
//
// A case's command line comes from its first line when that is "* args: ..."; a file
// <case>.host.json makes it run with that scripted host, <case>.qtt and <case>.qgt are a table look
// and a chart template for it to read. Cases run in their folder, so that no path of this machine
// gets into what is expected. A file that belongs to no case fails the run.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/clean_environment.h"

namespace fs = std::filesystem;

namespace {

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> result;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) result.push_back(line);
  return result;
}

/// The words of the case's "* args:" line.
std::vector<std::string> caseArguments(const fs::path& job) {
  constexpr std::string_view kMark = "* args:";
  const std::vector<std::string> all = lines(readFile(job));
  std::vector<std::string> arguments;
  if (all.empty() || !all.front().starts_with(kMark)) return arguments;
  std::string first = all.front().substr(kMark.size());
  if (first.ends_with('.')) first.pop_back();  // the period that ends the comment
  std::istringstream words(first);
  for (std::string word; words >> word;) arguments.push_back(word);
  return arguments;
}

/// Runs the program in the case's folder; what it wrote goes to files of the scratch folder.
int runProgram(const fs::path& job, const fs::path& scratch) {
  std::vector<std::string> arguments = {VORN_PROGRAM, "run", "--trace",
                                        (scratch / "trace").string()};
  const fs::path script = fs::path(job).replace_extension(".host.json");
  if (fs::exists(script)) {
    arguments.insert(arguments.end(), {"--host", "script=" + script.filename().string()});
  }
  for (std::string& word : caseArguments(job)) arguments.push_back(std::move(word));
  arguments.push_back(job.filename().string());

  const pid_t child = fork();
  if (child == 0) {
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    if (chdir(job.parent_path().c_str()) != 0) _exit(127);
    const int out = open((scratch / "stdout").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const int err = open((scratch / "stderr").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    vornwout::cleanEnvironment();
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Everything that a case shows, in one readable text.
std::string outcome(const fs::path& job, const fs::path& scratch) {
  for (const char* name : {"trace", "stdout", "stderr"}) fs::remove(scratch / name);
  const int status = runProgram(job, scratch);
  std::string text = fmt::format("--- exit {}\n", status);
  for (const char* name : {"stdout", "stderr", "trace"}) {
    text += fmt::format("--- {}\n{}", name, readFile(scratch / name));
    if (!text.ends_with('\n')) text += '\n';
  }
  return text;
}

/// The lines that differ, with the line before; both texts are short and mostly alike.
void printDifference(const std::string& expected, const std::string& actual) {
  const std::vector<std::string> left = lines(expected);
  const std::vector<std::string> right = lines(actual);
  std::size_t begin = 0;
  while (begin < std::min(left.size(), right.size()) && left[begin] == right[begin]) ++begin;
  std::size_t leftEnd = left.size();
  std::size_t rightEnd = right.size();
  while (leftEnd > begin && rightEnd > begin && left[leftEnd - 1] == right[rightEnd - 1]) {
    --leftEnd;
    --rightEnd;
  }
  if (begin > 0) std::cout << "    " << left[begin - 1] << "\n";
  for (std::size_t i = begin; i < leftEnd; ++i) std::cout << "  - " << left[i] << "\n";
  for (std::size_t i = begin; i < rightEnd; ++i) std::cout << "  + " << right[i] << "\n";
}

struct Corpus {
  std::vector<fs::path> jobs;
  std::vector<fs::path> orphans;
};

Corpus readCorpus(const fs::path& root) {
  Corpus corpus;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file() || entry.path().parent_path() == root) continue;
    const fs::path& path = entry.path();
    if (path.extension() == ".qxs") {
      corpus.jobs.push_back(path);
      continue;
    }
    std::string stem = path.string();
    for (const std::string_view ending : {".host.json", ".expected", ".qtt", ".qgt"}) {
      if (stem.ends_with(ending)) stem.resize(stem.size() - ending.size());
    }
    if (stem == path.string() || !fs::exists(stem + ".qxs")) corpus.orphans.push_back(path);
  }
  std::sort(corpus.jobs.begin(), corpus.jobs.end());
  return corpus;
}

}  // namespace

int main(int argc, char** argv) {
  bool update = false;
  std::string filter;
  for (int i = 1; i < argc; ++i) {
    if (std::string_view(argv[i]) == "--update") {
      update = true;
    } else {
      filter = argv[i];
    }
  }
  const fs::path root = VORN_JOBS_DIR;
  std::string pattern = (fs::temp_directory_path() / "vornwout-jobs-XXXXXX").string();
  const fs::path scratch = mkdtemp(pattern.data());

  const Corpus corpus = readCorpus(root);
  int passed = 0;
  int failed = 0;
  for (const fs::path& orphan : corpus.orphans) {
    std::cout << "FAILED " << fs::relative(orphan, root).string() << ": belongs to no case\n";
    ++failed;
  }
  for (const fs::path& job : corpus.jobs) {
    const std::string name = fs::relative(job, root).string();
    if (name.find(filter) == std::string::npos) continue;
    const fs::path expectedFile = fs::path(job).replace_extension(".expected");
    const std::string actual = outcome(job, scratch);
    if (update) std::ofstream(expectedFile, std::ios::binary) << actual;
    const std::string expected = readFile(expectedFile);
    if (actual == expected) {
      ++passed;
      continue;
    }
    ++failed;
    std::cout << "FAILED " << name << "\n";
    printDifference(expected, actual);
  }
  fs::remove_all(scratch);
  if (passed + failed == 0) {
    std::cout << "no case matches \"" << filter << "\"\n";
    return 1;
  }
  std::cout << fmt::format("{} passed, {} failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
