"""Turns the benchmark runs of scripts/run-benchmarks.sh into bench/RESULTS.md."""
import datetime
import json
import os
import platform
import sys

work, current, baseline, repetitions, min_time = sys.argv[1:6]
FAMILIES = ["autofunction", "automode", "dsp"]
SIZES = ["0.3", "5", "20"]


def medians(path):
    """Median CPU and wall time in ms and the counters, by benchmark name."""
    with open(path) as f:
        data = json.load(f)
    result = {}
    for run in data["benchmarks"]:
        if run.get("aggregate_name") != "median":
            continue
        scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0}[run["time_unit"]]
        name = run["run_name"].replace("/process_time", "")
        result[name] = (run["cpu_time"] * scale, run["real_time"] * scale, run)
    return result, data["context"]


def load(tree):
    tab, context = medians(os.path.join(work, tree + "-tab.json"))
    preview = {}
    for size in range(3):
        preview.update(medians(os.path.join(work, "%s-preview-%d.json" % (tree, size)))[0])
    return tab, preview, context


before_tab, before_preview, context = load("before")
after_tab, after_preview, _ = load("after")


def ms(value):
    return "%.3f" % value if value < 10 else "%.1f" % value


def cameras():
    for family in range(3):
        for features in (50, 500, 5000):
            yield family, features, "family:%d/features:%d" % (family, features)


out = []
out.append("# Benchmark results")
out.append("")
out.append("Written by `scripts/run-benchmarks.sh` on %s UTC." %
           datetime.datetime.utcnow().strftime("%Y-%m-%d %H:%M"))
out.append("")


def cpu_model():
    try:
        with open("/proc/cpuinfo") as f:
            for line in f:
                if line.startswith("model name"):
                    return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor() or platform.machine()


out.append("- Machine: %s, %d CPUs at %s MHz, %s" % (
    cpu_model(), context.get("num_cpus", 0), context.get("mhz_per_cpu", "?"),
    platform.platform()))
out.append("- Load average while running: %s" % ", ".join(
    "%.2f" % v for v in context.get("load_avg", [])))
out.append("- Before: commit %s with today's bench/; after: commit %s and the working tree." %
           (baseline, current))
out.append("- Release build, Qt offscreen platform, medians of %s repetitions of at least %s s "
           "each, in ms. CPU is the" % (repetitions, min_time))
out.append("  GUI thread's CPU time (for P4 the whole process's, as Qt scales on threads of its")
out.append("  own); wall is elapsed time, which other processes on a loaded machine stretch.")
out.append("  Goals are judged on CPU time, except P4's: a resize must be over within a frame,")
out.append("  and Qt scales on two threads, so P4 is judged on wall time. Ratios are CPU time of")
out.append("  the action over its floor's.")
out.append("  The camera's feature count includes its own features besides the 50, 500 or "
           "5,000 others.")
out.append("- The floor replays only the operations of the features. A walk also copies each")
out.append("  feature's pointer (a locked count up and down), which the floor leaves out, and")
out.append("  the editor's widget work weighs most on small cameras; both stay in the ratio.")
out.append("")


def worst(action, features, floor=None):
    """The largest CPU time (or ratio to the floor) of the action over the families."""
    values = []
    for family in range(3):
        args = "family:%d/features:%d" % (family, features)
        a = after_tab.get("%s/%s" % (action, args))
        f = after_tab.get("%s/%s" % (floor, args)) if floor else None
        if a and (f or not floor):
            values.append(a[0] / f[0] if floor else a[0])
    return max(values) if values else float("nan")


def goals():
    rows = []
    for name, action, floor in (("on show", "P1_RefreshOnShow", "P1_RefreshOnShowFloor"),
                                ("by the tick", "P1_RefreshOnTick", "P1_RefreshOnTickFloor")):
        rows.append(("P1 %s at 500 features" % name, "2 ms", worst(action, 500), 2.0, " ms"))
        rows.append(("P1 %s at 5,000 features" % name, "20 ms", worst(action, 5000), 20.0, " ms"))
        for features in (50, 500, 5000):
            rows.append(("P1 %s, ratio to the floor at %d features" % (name, features), "1.3",
                         worst(action, features, floor), 1.3, ""))
    rows.append(("P2 drag step at 5,000 features", "0.5 ms", worst("P2_DragStep", 5000), 0.5,
                 " ms"))
    writes = max(after_tab.get("P2_DragStep/" + args, (0, 0, {}))[2].get("writes", 0)
                 for _, _, args in cameras())
    rows.append(("P2 camera writes during a drag", "0", writes, 0, ""))
    rows.append(("P3 CreateTab at 500 features", "10 ms", worst("P3_CreateTab", 500), 10.0,
                 " ms"))
    resize = after_preview["P4_Resize/size:2"]
    base = after_preview["P4_Resize/size:0"][2]["peak_MB"]
    rows.append(("P4 resize at 20 MP (wall)", "16 ms", resize[1], 16.0, " ms"))
    rows.append(("P4 peak memory above 0.3 MP", "90 MB", resize[2]["peak_MB"] - base, 90.0,
                 " MB"))
    out.append("## Goals")
    out.append("")
    out.append("The worst family after the change; each figure is in the tables below.")
    out.append("")
    out.append("| Goal | At most | After | Met |")
    out.append("|---|---:|---:|---|")
    for title, limit, value, bound, unit in rows:
        if isinstance(value, int):
            figure = "%d" % value
        else:
            figure = ("%.2f" % value) if not unit else ms(value) + unit
        out.append("| %s | %s | %s | %s |" % (title, limit, figure,
                                              "yes" if value <= bound else "no"))
    out.append("")


goals()


def action_table(title, action, floor, note):
    out.append("## " + title)
    out.append("")
    out.append(note)
    out.append("")
    out.append("| Camera | Other features | CPU before | CPU after | Wall before | Wall after | "
               "Floor before | Floor after | Ratio before | Ratio after | Writes |")
    out.append("|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|")
    for family, features, args in cameras():
        b = before_tab.get("%s/%s" % (action, args))
        a = after_tab.get("%s/%s" % (action, args))
        fb = before_tab.get("%s/%s" % (floor, args)) if floor else None
        fa = after_tab.get("%s/%s" % (floor, args)) if floor else None
        if not (b and a):
            continue
        row = [FAMILIES[family], str(features), ms(b[0]), ms(a[0]), ms(b[1]), ms(a[1])]
        if fb and fa:
            row += [ms(fb[0]), ms(fa[0]), "%.2f" % (b[0] / fb[0]), "%.2f" % (a[0] / fa[0])]
        else:
            row += ["", "", "", ""]
        row.append("%d" % a[2].get("writes", 0) if "writes" in a[2] else "")
        out.append("| " + " | ".join(row) + " |")
    out.append("")


action_table("P1 full refresh, on show", "P1_RefreshOnShow", "P1_RefreshOnShowFloor",
             "Goal: at most 2 ms at 500 and 20 ms at 5,000 features; ratio to the floor at "
             "most 1.3.")
action_table("P1 full refresh, by the tick with every watched feature reported",
             "P1_RefreshOnTick", "P1_RefreshOnTickFloor", "Same goals.")
action_table("P2 one mouse-move step of a drag on the preview", "P2_DragStep", "P2_DragStepFloor",
             "Goal: at most 0.5 ms at 5,000 features, no camera write (Writes) during the drag.")
action_table("P2 release of the drag", "P2_Release", "P2_ReleaseFloor",
             "The release writes the region; shown for completeness.")
action_table("P3 CreateTab up to the first show", "P3_CreateTab", None,
             "Goal: at most 10 ms at 500 features. The editor built in a page's layout as "
             "CreateTab does, and the page shown.")

out.append("## P4 one resize of the preview")
out.append("")
out.append("Goal: at most 16 ms of wall time at 20 MP; peak memory above a 0.3 MP preview at most "
           "90 MB. Each size runs in a process of its own; peak is the process's peak RSS.")
out.append("")
out.append("| Reference size | CPU before | CPU after | Wall before | Wall after | Peak before MB | "
           "Peak after MB | Above 0.3 MP before MB | Above 0.3 MP after MB |")
out.append("|---|---:|---:|---:|---:|---:|---:|---:|---:|")
base_b = before_preview["P4_Resize/size:0"][2]["peak_MB"]
base_a = after_preview["P4_Resize/size:0"][2]["peak_MB"]
for size in range(3):
    b = before_preview["P4_Resize/size:%d" % size]
    a = after_preview["P4_Resize/size:%d" % size]
    out.append("| %s MP | %s | %s | %s | %s | %.1f | %.1f | %.1f | %.1f |" % (
        SIZES[size], ms(b[0]), ms(a[0]), ms(b[1]), ms(a[1]), b[2]["peak_MB"], a[2]["peak_MB"],
        b[2]["peak_MB"] - base_b, a[2]["peak_MB"] - base_a))
out.append("")
print("\n".join(out))
