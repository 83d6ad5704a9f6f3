#pragma once
// Whether the main loop goes on.

class RunState {
  public:
    static RunState& Default() {
        static RunState state;
        return state;
    }
    void Start() { running = true; }
    void Stop() { running = false; }
    [[nodiscard]] bool IsRunning() const { return running; }

  private:
    bool running = true;
};
