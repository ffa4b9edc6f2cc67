"""What a soak prints."""


def print_fault(fault, seed):
    print(f"{fault.kind}: step {fault.step} ({fault.name}): {fault.address}: {fault.detail} "
          f"[--seed {seed} --steps {fault.step} --verbose]", flush=True)


def print_report(soak):
    tally = soak.tally
    visits = len(tally.visits)
    share = 100 / visits if visits else 0
    print(f"\n{soak.browser_name}, seed {soak.seed}: {soak.steps_done} steps "
          f"({len(soak.not_carried_out)} not carried out), {visits} visits, "
          f"{soak.seconds / max(soak.steps_done, 1):.2f} s a step")
    print(f"recorded       {len(tally.recorded()):5}  {len(tally.recorded()) * share:.2f} %")
    for kind in ("missed", "twice", "wrong", "private"):
        name = "written twice" if kind == "twice" else kind
        print(f"{name:14} {tally.count(kind):5}  {tally.count(kind) * share:.2f} %")
    print(f"of the missed, {tally.late} were recorded later")
    _print_delays(tally)
    _print_missed_by_kind(tally)
    soak.print_costs()


def _print_delays(tally):
    print("\nmilliseconds from commit to record       min  median    95 %     max  visits")
    for kind, (least, middle, most, longest, count) in sorted(
            tally.milliseconds_by_kind().items()):
        print(f"  {kind:36} {least:7.0f} {middle:7.0f} {most:7.0f} {longest:7.0f} {count:7}")


def _print_missed_by_kind(tally):
    missed = {}
    for visit in tally.visits:
        if visit.written is None:
            missed[visit.kind] = missed.get(visit.kind, 0) + 1
    if missed:
        print("missed by kind: " + ", ".join(f"{kind} {count}"
                                             for kind, count in sorted(missed.items())))
