-- Sessions and jobs, shared by the sessions and the providers of their CIM classes.
-- Times are microseconds since 1970.

-- One row per session; the provider of the session's CIM class makes it.
CREATE TABLE CLPSession(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    KeepTime INTEGER,
    OEMVelmora_pid TEXT NOT NULL,
    WaitBehavior INTEGER,
    DisplayOption TEXT,
    OutputCount INTEGER,
    OutputFormat TEXT,
    OutputLanguage TEXT,
    OutputOrder TEXT,
    OutputPosition TEXT,
    OutputVerbosity TEXT,
    CurrentDefaultTarget TEXT
);
CREATE INDEX CLPSession_pid ON CLPSession(OEMVelmora_pid);

-- One row per command that ran on the controller, with the properties of a CIM_ConcreteJob.
CREATE TABLE CLPCmdJob(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    ElementName TEXT,
    Status TEXT,
    RunDay INTEGER,
    OEMVelmora_pid TEXT NOT NULL,
    JobStatus TEXT,
    DeleteOnCompletion INTEGER,
    ScheduledStartTime INTEGER,
    ElapsedTime INTEGER,
    Notify TEXT,
    OperationalStatus TEXT,
    RunMonth INTEGER,
    Owner TEXT,
    Caption TEXT,
    Priority INTEGER,
    UntilTime INTEGER,
    InstallDate INTEGER,
    InstanceID TEXT,
    RunStartInterval INTEGER,
    ErrorDescription TEXT,
    JobState INTEGER,
    ErrorCode INTEGER,
    JobRunTimes INTEGER,
    TimeSubmitted INTEGER,
    StartTime INTEGER,
    TimeBeforeRemoval INTEGER,
    OtherRecoveryAction TEXT,
    TimeOfLastStateChange INTEGER,
    StatusDescriptions TEXT,
    RunDayOfWeek INTEGER,
    RecoveryAction INTEGER,
    PercentComplete INTEGER,
    LocalOrUtcTime INTEGER,
    HealthState INTEGER,
    Description TEXT,
    Name TEXT,
    TimeToRemove INTEGER
);
-- max(id) of a process is asked for each new job. A job gets its time of removal at its end: until
-- then that index need not be written. Whoever has an InstanceID has the id in it: each command
-- pays for an index of its own.
CREATE INDEX CLPCmdJob_pid ON CLPCmdJob(OEMVelmora_pid, id);
CREATE INDEX CLPCmdJob_TimeToRemove ON CLPCmdJob(TimeToRemove) WHERE TimeToRemove IS NOT NULL;
