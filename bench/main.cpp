// tavimo_bench, the engine's benchmark program: every job beside its limit, and how many are within budget. Each job
// runs in a process of its own, so that memory and state start anew and a crash costs one line. It is no test; ./dev
// bench runs it.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "job.h"
#include "report.h"

namespace tavimo::bench {

void Expect(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

namespace {

constexpr const char* kUsage =
    "usage: ./dev bench [JOB…] [--size SHARE] [--scale] [--json] [--gross TIMES] [--list]\n"
    "  JOB            the jobs whose names begin with it; all without one\n"
    "  --size SHARE   inputs of a share of their size, 1 without it\n"
    "  --scale        time, cost per byte and times the limit at 1, 10 and 100 times a small size\n"
    "  --json         one object for each job\n"
    "  --gross TIMES  succeed unless a job takes that many times its budget\n";

struct Settings {
  std::vector<std::string> names;
  double share = 1;
  double gross = 1;
  bool isHelp = false;
  bool isScaled = false;
  bool isListed = false;
  Format format = Format::Table;
};

volatile std::sig_atomic_t endingSignal = 0;

// The inputs lie in memory, up to a gigabyte of them: whoever ends the program must not leave them there.
void HoldSignals() {
  struct sigaction action {};
  action.sa_handler = [](int signal) { endingSignal = signal; };  // no SA_RESTART: waiting ends too
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

struct Ended {};

struct Answer {
  Measurement measured;
  char failure[200] = "";
};
static_assert(std::is_trivially_copyable_v<Answer>);

Answer Measure(const Job& job, const Inputs& inputs) {
  Answer answer;
  try {
    answer.measured = job.measure(inputs);
  } catch (const std::exception& error) {
    std::snprintf(answer.failure, sizeof answer.failure, "%s", error.what());
  }
  return answer;
}

Answer MeasureInChild(const Job& job, const Inputs& inputs) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe is to be had");
  std::fflush(stdout);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process is to be had");
  if (child == 0) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
    const Answer answer = Measure(job, inputs);
    _exit(write(ends[1], &answer, sizeof answer) == static_cast<ssize_t>(sizeof answer) ? 0 : 1);
  }
  close(ends[1]);
  Answer answer;
  if (read(ends[0], &answer, sizeof answer) != static_cast<ssize_t>(sizeof answer)) {
    std::strcpy(answer.failure, "it crashed");
  }
  close(ends[0]);
  if (endingSignal != 0) kill(child, SIGKILL);
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  if (endingSignal != 0) throw Ended();
  return answer;
}

Outcome Run(const Job& job, Inputs& inputs) try {
  for (const Input input : job.inputs) inputs.Make(input);
  if (endingSignal != 0) throw Ended();
  const Answer answer = MeasureInChild(job, inputs);
  return {&job, answer.measured, answer.failure};
} catch (const std::exception& error) {
  return {&job, {}, error.what()};
}

std::vector<Job> AllJobs() {
  std::vector<Job> all;
  for (const auto& family : {SoundJobs(), CaptureJobs(), PageJobs(), QuestionJobs(), StartJobs()}) {
    all.insert(all.end(), family.begin(), family.end());
  }
  return all;
}

std::vector<Job> ChosenJobs(const std::vector<std::string>& names) {
  std::vector<Job> chosen;
  for (const Job& job : AllJobs()) {
    bool isChosen = names.empty();
    for (const std::string& name : names) isChosen = isChosen || std::string(job.name).starts_with(name);
    if (isChosen) chosen.push_back(job);
  }
  return chosen;
}

int RunAtOneSize(const std::vector<Job>& jobs, const Settings& settings) {
  Inputs inputs(settings.share);
  Report report(settings.format, settings.share);
  report.Begin();
  for (const Job& job : jobs) report.Add(Run(job, inputs));
  report.End();
  return report.Worst() <= settings.gross ? 0 : 1;
}

int RunAtThreeSizes(const std::vector<Job>& jobs) {
  std::map<std::string, std::vector<Outcome>> outcomes;
  if (std::none_of(jobs.begin(), jobs.end(), [](const Job& job) { return job.growth == Growth::Proportional; })) {
    throw std::invalid_argument("no job of that name grows with its input");
  }
  for (const double share : {0.01, 0.1, 1.0}) {
    Inputs inputs(share);
    for (const Job& job : jobs) {
      if (job.growth == Growth::Proportional) outcomes[job.name].push_back(Run(job, inputs));
    }
  }
  bool areWithin = true;
  for (const Job& job : jobs) {
    if (job.growth == Growth::Proportional) areWithin = PrintGrowth(job, outcomes[job.name]) && areWithin;
  }
  return areWithin ? 0 : 1;
}

double NumberIn(const std::string& option, std::string_view text, double least, double most) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number >= least && number <= most) return number;
  std::ostringstream message;
  message << option << " needs a number from " << least << " to " << most;
  throw std::invalid_argument(message.str());
}

Settings Parse(int argc, char** argv) {
  constexpr double kLargestShare = 4;  // a wave file's lengths have 32 bits
  Settings settings;
  bool isDefault = true;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    const auto value = [&] { return std::string_view(++i < argc ? argv[i] : ""); };
    isDefault = isDefault && (word == "--scale" || !word.starts_with("-"));
    if (word == "--size") {
      settings.share = NumberIn(word, value(), 0.001, kLargestShare);
    } else if (word == "--gross") {
      settings.gross = NumberIn(word, value(), 1, 1000);
    } else if (word == "--help") {
      settings.isHelp = true;
    } else if (word == "--scale") {
      settings.isScaled = true;
    } else if (word == "--json") {
      settings.format = Format::Json;
    } else if (word == "--list") {
      settings.isListed = true;
    } else if (word.starts_with("-")) {
      throw std::invalid_argument("unknown option " + word);
    } else {
      settings.names.push_back(word);
    }
  }
  if (settings.isScaled && !isDefault)
    throw std::invalid_argument("--scale takes the names of jobs and no other option");
  return settings;
}

int Main(int argc, char** argv) try {
  const Settings settings = Parse(argc, argv);
  if (settings.isHelp) return std::fputs(kUsage, stdout) >= 0 ? 0 : 1;
  HoldSignals();
  const std::vector<Job> jobs = ChosenJobs(settings.names);
  if (jobs.empty()) throw std::invalid_argument("no job of that name; --list names them");
  if (settings.isListed) {
    for (const Job& job : jobs) std::printf("%-22s %s\n", job.name, job.what);
    return 0;
  }
  return settings.isScaled ? RunAtThreeSizes(jobs) : RunAtOneSize(jobs, settings);
} catch (const std::invalid_argument& error) {
  std::cerr << "tavimo_bench: " << error.what() << '\n' << kUsage;
  return 2;
} catch (const Ended&) {
  std::signal(endingSignal, SIG_DFL);
  return std::raise(endingSignal);
} catch (const std::exception& error) {
  std::cerr << "tavimo_bench: " << error.what() << '\n';
  return 1;
}

}  // namespace

}  // namespace tavimo::bench

int main(int argc, char** argv) { return tavimo::bench::Main(argc, argv); }
