/* Harbour operations schema: ports, vessels, voyages, cargo and billing.
   Deployed by the operations team with sqlcmd; batches end with GO. */
USE HarbourOps
GO
SET ANSI_NULLS ON
GO
SET QUOTED_IDENTIFIER ON
GO

CREATE TABLE [dbo].[Regions] (
    [RegionID]   INT IDENTITY(1,1) NOT NULL,
    [Name]       NVARCHAR(60) NOT NULL,
    [CreatedAt]  DATETIME2 NOT NULL CONSTRAINT DF_Regions_CreatedAt DEFAULT (SYSDATETIME()),
    CONSTRAINT [PK_Regions] PRIMARY KEY CLUSTERED ([RegionID] ASC)
)
GO

CREATE TABLE dbo.Ports (
    PortID      INT IDENTITY NOT NULL,
    RegionID    INT NOT NULL,
    UnLocode    CHAR(5) NOT NULL,
    Name        NVARCHAR(80) NOT NULL,
    MaxDraught  DECIMAL(5,2) NULL,
    IsActive    BIT NOT NULL DEFAULT 1,
    CONSTRAINT PK_Ports PRIMARY KEY NONCLUSTERED (PortID),
    CONSTRAINT FK_Ports_Regions FOREIGN KEY (RegionID) REFERENCES dbo.Regions (RegionID)
)
GO
CREATE UNIQUE NONCLUSTERED INDEX UX_Ports_UnLocode ON dbo.Ports (UnLocode)
GO

CREATE TABLE dbo.Berths (
    BerthID   INT IDENTITY(100, 1) PRIMARY KEY,
    PortID    INT NOT NULL REFERENCES dbo.Ports (PortID),
    Code      VARCHAR(10) NOT NULL,
    LengthM   DECIMAL(7,2) NOT NULL,
    Notes     NVARCHAR(MAX) NULL
)
GO
CREATE NONCLUSTERED INDEX IX_Berths_Port ON dbo.Berths (PortID, Code)
GO

CREATE TABLE dbo.VesselTypes (
    VesselTypeID  SMALLINT IDENTITY(1,1) NOT NULL,
    Description   NVARCHAR(50) NOT NULL,
    CONSTRAINT PK_VesselTypes PRIMARY KEY (VesselTypeID)
)
GO

CREATE TABLE dbo.Owners (
    OwnerID     INT IDENTITY(1,1) NOT NULL CONSTRAINT PK_Owners PRIMARY KEY,
    Name        NVARCHAR(120) NOT NULL,
    Country     CHAR(2) NOT NULL,
    Email       VARCHAR(254) NULL,
    CreditLimit MONEY NOT NULL
)
GO
ALTER TABLE dbo.Owners ADD CONSTRAINT DF_Owners_CreditLimit DEFAULT (0) FOR CreditLimit
GO

CREATE TABLE dbo.Vessels (
    VesselID      INT IDENTITY(1,1) NOT NULL,
    ImoNumber     CHAR(7) NOT NULL,
    Name          NVARCHAR(100) NOT NULL,
    VesselTypeID  SMALLINT NOT NULL,
    OwnerID       INT NOT NULL,
    GrossTonnage  INT NULL,
    BuiltYear     SMALLINT NULL,
    RowGuid       UNIQUEIDENTIFIER NOT NULL CONSTRAINT DF_Vessels_RowGuid DEFAULT NEWID(),
    ModifiedAt    DATETIME NOT NULL CONSTRAINT DF_Vessels_ModifiedAt DEFAULT GETDATE(),
    CONSTRAINT PK_Vessels PRIMARY KEY CLUSTERED (VesselID),
    CONSTRAINT FK_Vessels_Types FOREIGN KEY (VesselTypeID) REFERENCES dbo.VesselTypes (VesselTypeID),
    CONSTRAINT FK_Vessels_Owners FOREIGN KEY (OwnerID) REFERENCES dbo.Owners (OwnerID) ON DELETE CASCADE
)
GO
CREATE UNIQUE INDEX UX_Vessels_Imo ON dbo.Vessels (ImoNumber)
GO
CREATE INDEX IX_Vessels_Owner ON dbo.Vessels (OwnerID)
GO

CREATE TABLE dbo.CrewMembers (
    CrewID      INT IDENTITY(1,1) NOT NULL PRIMARY KEY NONCLUSTERED,
    VesselID    INT NULL,
    [Full Name] NVARCHAR(100) NOT NULL,
    Rank        VARCHAR(30) NOT NULL DEFAULT 'Deckhand',
    BirthDate   DATE NULL,
    OnBoard     BIT NOT NULL DEFAULT 0,
    CONSTRAINT FK_Crew_Vessels FOREIGN KEY (VesselID) REFERENCES dbo.Vessels (VesselID)
)
GO

CREATE TABLE dbo.Voyages (
    VoyageID     BIGINT IDENTITY(1,1) NOT NULL,
    VesselID     INT NOT NULL,
    FromPortID   INT NOT NULL,
    ToPortID     INT NOT NULL,
    DepartedAt   DATETIME2(0) NULL,
    ArrivedAt    DATETIME2(0) NULL,
    Status       VARCHAR(12) NOT NULL CONSTRAINT DF_Voyages_Status DEFAULT ('PLANNED'),
    CONSTRAINT PK_Voyages PRIMARY KEY (VoyageID),
    CONSTRAINT FK_Voyages_Vessel FOREIGN KEY (VesselID) REFERENCES dbo.Vessels (VesselID),
    CONSTRAINT FK_Voyages_From FOREIGN KEY (FromPortID) REFERENCES dbo.Ports (PortID),
    CONSTRAINT FK_Voyages_To FOREIGN KEY (ToPortID) REFERENCES dbo.Ports (PortID),
    CONSTRAINT CK_Voyages_Status CHECK (Status IN ('PLANNED', 'SAILING', 'ARRIVED', 'CANCELLED'))
)
GO
CREATE NONCLUSTERED INDEX IX_Voyages_Vessel_Departed ON dbo.Voyages (VesselID, DepartedAt DESC)
GO

CREATE TABLE dbo.PortCalls (
    PortCallID  INT IDENTITY(1,1) NOT NULL,
    VoyageID    BIGINT NOT NULL,
    BerthID     INT NOT NULL,
    EtaAt       DATETIME NOT NULL,
    AtaAt       DATETIME NULL,
    CONSTRAINT PK_PortCalls PRIMARY KEY CLUSTERED (PortCallID),
    CONSTRAINT FK_PortCalls_Voyage FOREIGN KEY (VoyageID) REFERENCES dbo.Voyages (VoyageID),
    CONSTRAINT FK_PortCalls_Berth FOREIGN KEY (BerthID) REFERENCES dbo.Berths (BerthID)
)
GO

CREATE TABLE dbo.CargoKinds (
    CargoKindID  TINYINT NOT NULL PRIMARY KEY,
    Name         NVARCHAR(40) NOT NULL,
    Hazardous    BIT NOT NULL DEFAULT 0
)
GO

CREATE TABLE dbo.Manifests (
    ManifestID  INT IDENTITY(1,1) NOT NULL,
    VoyageID    BIGINT NOT NULL,
    IssuedOn    DATE NOT NULL DEFAULT CAST(GETDATE() AS DATE),
    CONSTRAINT PK_Manifests PRIMARY KEY (ManifestID),
    CONSTRAINT FK_Manifests_Voyage FOREIGN KEY (VoyageID) REFERENCES dbo.Voyages (VoyageID)
)
GO

CREATE TABLE dbo.ManifestLines (
    ManifestID   INT NOT NULL,
    LineNo       SMALLINT NOT NULL,
    CargoKindID  TINYINT NOT NULL,
    WeightKg     DECIMAL(12,3) NOT NULL,
    Description  NVARCHAR(200) NULL,
    CONSTRAINT PK_ManifestLines PRIMARY KEY CLUSTERED (ManifestID, LineNo),
    CONSTRAINT FK_ManifestLines_Manifest FOREIGN KEY (ManifestID) REFERENCES dbo.Manifests (ManifestID),
    CONSTRAINT FK_ManifestLines_Kind FOREIGN KEY (CargoKindID) REFERENCES dbo.CargoKinds (CargoKindID)
)
GO

CREATE TABLE dbo.Invoices (
    InvoiceID   INT IDENTITY(1000,1) NOT NULL,
    OwnerID     INT NOT NULL,
    PortCallID  INT NULL,
    IssuedAt    DATETIME NOT NULL DEFAULT CURRENT_TIMESTAMP,
    DueOn       DATE NOT NULL,
    Total       DECIMAL(14,2) NOT NULL DEFAULT 0.00,
    Paid        BIT NOT NULL DEFAULT 0,
    CONSTRAINT PK_Invoices PRIMARY KEY (InvoiceID),
    CONSTRAINT FK_Invoices_Owner FOREIGN KEY (OwnerID) REFERENCES dbo.Owners (OwnerID),
    CONSTRAINT FK_Invoices_PortCall FOREIGN KEY (PortCallID) REFERENCES dbo.PortCalls (PortCallID)
)
GO
CREATE INDEX IX_Invoices_Owner_Due ON dbo.Invoices (OwnerID, DueOn) INCLUDE (Total)
GO

CREATE TABLE dbo.InvoiceLines (
    InvoiceLineID  INT IDENTITY(1,1) NOT NULL PRIMARY KEY,
    InvoiceID      INT NOT NULL,
    Item           NVARCHAR(100) NOT NULL,
    Quantity       DECIMAL(10,2) NOT NULL DEFAULT 1,
    UnitPrice      DECIMAL(12,2) NOT NULL,
    CONSTRAINT FK_InvoiceLines_Invoice FOREIGN KEY (InvoiceID) REFERENCES dbo.Invoices (InvoiceID) ON DELETE CASCADE
)
GO

CREATE TABLE dbo.Payments (
    PaymentID   INT IDENTITY(1,1) NOT NULL,
    InvoiceID   INT NOT NULL,
    Amount      DECIMAL(14,2) NOT NULL,
    PaidAt      DATETIME NOT NULL,
    Reference   VARCHAR(40) NULL,
    CONSTRAINT PK_Payments PRIMARY KEY NONCLUSTERED (PaymentID),
    CONSTRAINT FK_Payments_Invoice FOREIGN KEY (InvoiceID) REFERENCES dbo.Invoices (InvoiceID)
)
GO
ALTER TABLE dbo.Payments ADD CONSTRAINT DF_Payments_PaidAt DEFAULT (GETDATE()) FOR PaidAt
GO

CREATE TABLE dbo.AuditLog (
    AuditID    BIGINT IDENTITY(1,1) NOT NULL PRIMARY KEY,
    TableName  SYSNAME NOT NULL,
    Action     CHAR(1) NOT NULL,
    KeyValue   NVARCHAR(50) NULL,
    ChangedBy  NVARCHAR(128) NOT NULL DEFAULT SUSER_SNAME(),
    ChangedAt  DATETIME2 NOT NULL DEFAULT SYSUTCDATETIME()
)
GO

CREATE VIEW dbo.vActiveVessels AS
SELECT v.VesselID, v.Name, t.Description AS VesselType, o.Name AS OwnerName
FROM dbo.Vessels v
JOIN dbo.VesselTypes t ON t.VesselTypeID = v.VesselTypeID
JOIN dbo.Owners o ON o.OwnerID = v.OwnerID
WHERE EXISTS (SELECT 1 FROM dbo.Voyages y WHERE y.VesselID = v.VesselID AND y.Status = 'SAILING')
GO

CREATE VIEW dbo.vPortTraffic
AS
SELECT p.UnLocode, COUNT(*) AS Calls, MAX(pc.AtaAt) AS LastArrival
FROM dbo.PortCalls pc
INNER JOIN dbo.Berths b ON b.BerthID = pc.BerthID
INNER JOIN dbo.Ports p ON p.PortID = b.PortID
GROUP BY p.UnLocode
GO

CREATE VIEW dbo.vOpenInvoices AS
SELECT TOP 100 PERCENT i.InvoiceID, o.Name, i.Total,
       ISNULL((SELECT SUM(Amount) FROM dbo.Payments pm WHERE pm.InvoiceID = i.InvoiceID), 0) AS PaidSoFar,
       DATEDIFF(day, i.DueOn, GETDATE()) AS DaysOverdue
FROM dbo.Invoices i JOIN dbo.Owners o ON o.OwnerID = i.OwnerID
WHERE i.Paid = 0
ORDER BY i.DueOn
GO

CREATE VIEW dbo.vCrewRoster AS
SELECT c.[Full Name] AS CrewName, c.Rank, v.Name AS VesselName,
       CASE WHEN c.OnBoard = 1 THEN 'aboard' ELSE 'ashore' END AS Whereabouts
FROM dbo.CrewMembers c LEFT JOIN dbo.Vessels v ON v.VesselID = c.VesselID
GO

CREATE VIEW dbo.vCargoTotals AS
SELECT m.VoyageID, k.Name AS CargoKind, SUM(l.WeightKg) / 1000.0 AS Tonnes
FROM dbo.ManifestLines l
JOIN dbo.Manifests m ON m.ManifestID = l.ManifestID
JOIN dbo.CargoKinds k ON k.CargoKindID = l.CargoKindID
GROUP BY m.VoyageID, k.Name
GO

CREATE PROCEDURE dbo.usp_CloseVoyage
    @VoyageID BIGINT,
    @ArrivedAt DATETIME2 = NULL
AS
BEGIN
    SET NOCOUNT ON;
    IF @ArrivedAt IS NULL
        SET @ArrivedAt = SYSDATETIME();
    UPDATE dbo.Voyages
       SET ArrivedAt = @ArrivedAt, Status = 'ARRIVED'
     WHERE VoyageID = @VoyageID AND Status = 'SAILING';
    IF @@ROWCOUNT = 0
    BEGIN
        RAISERROR('Voyage %d is not sailing', 16, 1, @VoyageID);
        RETURN 1;
    END;
    UPDATE dbo.CrewMembers SET OnBoard = 0
     WHERE VesselID = (SELECT VesselID FROM dbo.Voyages WHERE VoyageID = @VoyageID);
    RETURN 0;
END
GO

CREATE PROCEDURE dbo.usp_RecordPayment @InvoiceID INT, @Amount DECIMAL(14,2), @Reference VARCHAR(40)
AS
BEGIN
    SET NOCOUNT ON;
    BEGIN TRANSACTION;
    INSERT INTO dbo.Payments (InvoiceID, Amount, PaidAt, Reference)
    VALUES (@InvoiceID, @Amount, GETDATE(), @Reference);
    UPDATE dbo.Invoices SET Paid = 1
     WHERE InvoiceID = @InvoiceID
       AND Total <= (SELECT SUM(Amount) FROM dbo.Payments WHERE InvoiceID = @InvoiceID);
    COMMIT TRANSACTION;
END
GO

CREATE FUNCTION dbo.fn_InvoiceBalance (@InvoiceID INT)
RETURNS DECIMAL(14,2)
AS
BEGIN
    DECLARE @Balance DECIMAL(14,2);
    SELECT @Balance = i.Total - ISNULL(SUM(p.Amount), 0)
      FROM dbo.Invoices i LEFT JOIN dbo.Payments p ON p.InvoiceID = i.InvoiceID
     WHERE i.InvoiceID = @InvoiceID
     GROUP BY i.Total;
    RETURN @Balance;
END
GO

CREATE TRIGGER dbo.trg_Payments_Audit ON dbo.Payments
AFTER INSERT, DELETE
AS
BEGIN
    SET NOCOUNT ON;
    INSERT INTO dbo.AuditLog (TableName, Action, KeyValue)
    SELECT 'Payments', 'I', CAST(PaymentID AS NVARCHAR(50)) FROM inserted;
    INSERT INTO dbo.AuditLog (TableName, Action, KeyValue)
    SELECT 'Payments', 'D', CAST(PaymentID AS NVARCHAR(50)) FROM deleted;
END
GO

INSERT INTO dbo.Regions (Name) VALUES (N'North Sea'), (N'Baltic'), (N'Mediterranean');
INSERT INTO dbo.VesselTypes (Description) VALUES ('Container'), ('Bulk carrier'), ('Tanker');
INSERT INTO dbo.CargoKinds (CargoKindID, Name, Hazardous) VALUES (1, 'Grain', 0), (2, 'Crude oil', 1);
GO
