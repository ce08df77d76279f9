// Deep: recursive functions whose frames live on the heap. Cones of logic and trees of source are as deep as a user
// makes them; a walk over them that is told best by recursion returns Deep and calls itself with co_await.
//
//     Deep<unsigned> Depth(const Node* node) {
//       if (!node) co_return 0;
//       unsigned left = co_await Depth(node->left);
//       ...
//     }
//     unsigned depth = Depth(root).Run();
#ifndef KESTRIN_UTIL_DEEP_H
#define KESTRIN_UTIL_DEEP_H

#include <coroutine>
#include <exception>
#include <utility>
#include <vector>

/// Awaited once, or run once from a function that is no Deep itself. T is cheap to copy and default constructible.
template <class T> class [[nodiscard]] Deep {
  using Stack = std::vector<std::coroutine_handle<>>;

public:
  struct promise_type {
    Deep get_return_object() { return Deep(std::coroutine_handle<promise_type>::from_promise(*this)); }
    std::suspend_always initial_suspend() noexcept { return {}; }
    std::suspend_always final_suspend() noexcept { return {}; }
    void return_value(T result) { value = std::move(result); }
    void unhandled_exception() { std::terminate(); }
    T value{};
    Stack* stack = nullptr; // the calls in progress, the innermost one last
  };

  Deep(Deep&& other) noexcept : _frame(std::exchange(other._frame, nullptr)) {}
  Deep(const Deep&) = delete;
  Deep& operator=(const Deep&) = delete;
  ~Deep() {
    if (_frame) _frame.destroy();
  }

  bool await_ready() const noexcept { return false; }
  /// The caller sleeps, and the loop of Run goes on with this call.
  template <class Caller> void await_suspend(std::coroutine_handle<Caller> caller) {
    _frame.promise().stack = caller.promise().stack;
    _frame.promise().stack->push_back(_frame);
  }
  T await_resume() { return _frame.promise().value; }

  T Run() {
    Stack stack;
    _frame.promise().stack = &stack;
    stack.push_back(_frame);
    while (!stack.empty()) {
      std::coroutine_handle<> innermost = stack.back();
      innermost.resume();
      if (innermost.done()) stack.pop_back();
    }
    return _frame.promise().value;
  }

private:
  explicit Deep(std::coroutine_handle<promise_type> frame) : _frame(frame) {}
  std::coroutine_handle<promise_type> _frame;
};

#endif
