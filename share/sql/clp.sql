-- The address cache and stop requests, one database for all sessions of a controller.
-- Values arrive as quoted text; the columns' types say what they become.

-- One row per object that was ever addressed.
CREATE TABLE addrsvc_clp(
    ufip TEXT NOT NULL UNIQUE,
    cimclass TEXT NOT NULL COLLATE NOCASE,
    id INTEGER NOT NULL UNIQUE,
    ns TEXT
);
-- By parent address (with its "/" at the end), so that what lies directly in a parent is found
-- without passing over all that is below. The words char(47) and char() stand for "/" and "", as
-- the queries have them: literals there become parameters, which no index matches.
CREATE INDEX addrsvc_clp_parent ON addrsvc_clp(rtrim(ufip, replace(ufip, char(47), char())), ufip);
CREATE INDEX addrsvc_clp_cimclass ON addrsvc_clp(cimclass);

-- One row per key of an object's path; id is the one of its row in addrsvc_clp.
CREATE TABLE addrsvc_cim(
    id INTEGER NOT NULL,
    name TEXT NOT NULL,
    value TEXT,
    type INTEGER NOT NULL
);
CREATE INDEX addrsvc_cim_id ON addrsvc_cim(id);
CREATE INDEX addrsvc_cim_value ON addrsvc_cim(value, id);

-- The next free number of each parent and class tag, and under "/" of the rows themselves.
CREATE TABLE addrsvc_seq(
    ufip TEXT NOT NULL UNIQUE,
    next INTEGER NOT NULL
);

-- Requests to stop a job of a session: pid is the session's process, killed 0 to terminate.
CREATE TABLE job_terminate(
    pid TEXT NOT NULL,
    jobid INTEGER NOT NULL,
    killed INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX job_terminate_pid ON job_terminate(pid);
