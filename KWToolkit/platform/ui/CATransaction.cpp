// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CATransaction.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/CALayer.h>

#include <exception>
#include <map>
#include <utility>
#include <vector>

namespace kw {

namespace {

constexpr double frameInterval = 1.0 / 60;
/// How often layers that need layout because of layout are served in one go.
constexpr int layoutRounds = 8;

/// Calls its block when nobody waits for it any more.
struct Completion {
    explicit Completion(std::shared_ptr<void> outer)
        : enclosing(std::move(outer)) { }
    ~Completion() {
        if (block)
            Platform::performOnMainThread(std::move(block)); // also where the loop is gone by now
    }
    Completion(const Completion&) = delete;
    Completion& operator=(const Completion&) = delete;

    std::function<void()> block;
    std::shared_ptr<void> enclosing;
};

struct Transaction {
    bool isImplicit = true;
    double duration = 0.25;
    CAMediaTimingFunction timingFunction =
        CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionDefault);
    bool disablesActions = false;
    std::shared_ptr<void> enclosingCompletion;
    std::shared_ptr<void> completion;
};

/// Layers in the order in which they came, each once; they take themselves out.
class Layers {
public:
    void add(CALayer& layer, std::uint64_t& ticket) {
        if (ticket == 0)
            m_layers.emplace(ticket = ++m_newest, &layer);
    }
    void remove(std::uint64_t& ticket) { m_layers.erase(std::exchange(ticket, 0)); }
    bool isEmpty() const { return m_layers.empty(); }

    /// Calls for those that are there by now; a call may take out any of them.
    template <class Call>
    void forEach(Call call) {
        const auto newest = m_newest;
        for (auto next = m_layers.begin(); next != m_layers.end() && next->first <= newest;) {
            const auto [ticket, layer] = *next;
            call(*layer);
            next = m_layers.upper_bound(ticket);
        }
    }

private:
    std::map<std::uint64_t, CALayer*> m_layers;
    std::uint64_t m_newest = 0;
};

struct State {
    std::vector<Transaction> transactions; // the innermost is the last
    bool isFlushAsked = false;
    bool isCommitting = false;
    std::uint64_t commits = 0;
    bool honorsReducedMotion = false;
    Layers needingLayout;
    Layers animated;
    // What a run loop holds lives as long as it is going to be called.
    std::weak_ptr<void> pass;
    std::weak_ptr<void> frame;
    RunLoop::Timer frameTimer = RunLoop::Timer::none;
    const RunLoop* frameLoop = nullptr; // never called: it may be another one by now
};

// Never destroyed: layers in static storage take themselves out.
State& state() {
    static auto& value = *new State;
    return value;
}

const Transaction& current() {
    static const auto& none = *new Transaction;
    return state().transactions.empty() ? none : state().transactions.back();
}

} // namespace

// What only layers and transactions do with each other.
struct CATransaction::Work {
    static void commitAll() {
        State& now = state();
        now.isCommitting = true;
        std::exception_ptr failure;
        try {
            for (int i = 0; i < layoutRounds && !now.needingLayout.isEmpty(); ++i)
                now.needingLayout.forEach([](CALayer& layer) { layer.layoutIfNeeded(); });
        } catch (...) {
            failure = std::current_exception();
        }
        now.isCommitting = false;
        now.isFlushAsked = false;
        now.pass.reset();
        now.transactions.clear();
        ++now.commits;
        const double time = Platform::clock().now();
        now.animated.forEach([time](CALayer& layer) { layer.beginAnimations(time); });
        scheduleFrame();
        if (!now.needingLayout.isEmpty())
            Platform::runLoop().callAfter(frameInterval, [] {
                if (!state().needingLayout.isEmpty())
                    ensure();
            });
        if (failure)
            std::rethrow_exception(failure);
    }

    static void scheduleFrame() {
        State& now = state();
        if (now.animated.isEmpty() || !now.frame.expired())
            return;
        const auto token = std::make_shared<int>();
        RunLoop& loop = Platform::runLoop();
        now.frameTimer = loop.callAfter(frameInterval, [token] { showFrame(); });
        now.frameLoop = &loop;
        now.frame = token;
    }

    static void showFrame() {
        State& now = state();
        now.frame.reset();
        const double time = Platform::clock().now();
        try {
            now.animated.forEach([time](CALayer& layer) {
                layer.setNeedsDisplay();
                layer.endAnimations(time);
            });
        } catch (...) {
            scheduleFrame();
            throw;
        }
        scheduleFrame();
    }

    static void cancelFrame() {
        State& now = state();
        if (now.frame.expired())
            return;
        now.frame.reset();
        if (RunLoop& loop = Platform::runLoop(); &loop == now.frameLoop)
            loop.cancel(now.frameTimer);
    }

    static Transaction& innermost() {
        ensure();
        return state().transactions.back();
    }
};

void CATransaction::begin() {
    Transaction inner = current();
    inner.isImplicit = false;
    inner.enclosingCompletion = inner.completion;
    state().transactions.push_back(std::move(inner));
}

void CATransaction::commit() {
    State& now = state();
    auto& transactions = now.transactions;
    if (transactions.empty() || transactions.back().isImplicit)
        return;
    if (transactions.size() > 1)
        transactions.pop_back();
    else if (!now.isCommitting)
        Work::commitAll();
    if (now.isFlushAsked)
        flush();
}

void CATransaction::flush() {
    State& now = state();
    if (now.isCommitting || now.transactions.empty() || !now.transactions.front().isImplicit)
        return;
    if (now.transactions.size() == 1)
        Work::commitAll();
    else
        now.isFlushAsked = true;
}

double CATransaction::animationDuration() { return current().duration; }

void CATransaction::setAnimationDuration(double seconds) { Work::innermost().duration = seconds; }

CAMediaTimingFunction CATransaction::animationTimingFunction() { return current().timingFunction; }

void CATransaction::setAnimationTimingFunction(const CAMediaTimingFunction& function) {
    Work::innermost().timingFunction = function;
}

bool CATransaction::disableActions() { return current().disablesActions; }

void CATransaction::setDisableActions(bool disable) { Work::innermost().disablesActions = disable; }

void CATransaction::setCompletionBlock(std::function<void()> block) {
    Transaction& transaction = Work::innermost();
    const auto completion = std::make_shared<Completion>(transaction.enclosingCompletion);
    completion->block = std::move(block);
    transaction.completion = completion;
}

bool CATransaction::honorsReducedMotion() { return state().honorsReducedMotion; }
void CATransaction::setHonorsReducedMotion(bool honors) { state().honorsReducedMotion = honors; }

void CATransaction::ensure() {
    State& now = state();
    if (now.transactions.empty())
        now.transactions.emplace_back();
    if (!now.transactions.front().isImplicit || !now.pass.expired())
        return;
    const auto token = std::make_shared<int>();
    Platform::runLoop().perform([token] { flush(); });
    now.pass = token;
}

std::uint64_t CATransaction::count() { return state().commits; }
std::shared_ptr<void> CATransaction::completion() { return Work::innermost().completion; }

bool CATransaction::reducesMotion() {
    return honorsReducedMotion() && Platform::workspace().accessibilityDisplayShouldReduceMotion();
}

void CATransaction::addNeedingLayout(CALayer& layer) {
    state().needingLayout.add(layer, layer.m_layoutTicket);
    ensure();
}

void CATransaction::removeNeedingLayout(CALayer& layer) {
    state().needingLayout.remove(layer.m_layoutTicket);
}

void CATransaction::addAnimated(CALayer& layer) {
    state().animated.add(layer, layer.m_animationTicket);
    ensure();
}

void CATransaction::removeAnimated(CALayer& layer) {
    state().animated.remove(layer.m_animationTicket);
    if (state().animated.isEmpty())
        Work::cancelFrame();
}

} // namespace kw
